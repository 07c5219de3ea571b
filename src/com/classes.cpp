#include "com/classes.h"

#include <array>

#include "com/Base64Object.h"
#include "com/ControllerObject.h"
#include "com/DummyCallObject.h"
#include "com/OptionsObject.h"
#include "com/SchedulerObject.h"
#include "com/SystemStateObject.h"
#include "com/TransferObject.h"
#include "com/empty_objects.h"

namespace ondura {

namespace {

template <class Object>
IDispatch* Make() {
  return new Object;
}

const std::array<PublicClass, 8> kClasses{{
    {&__uuidof(::Controller), L"Controller", &Make<ControllerObject>},
    {&__uuidof(::Scheduler), L"Scheduler", &Make<SchedulerObject>},
    {&__uuidof(::Transfer), L"Transfer", &Make<TransferObject>},
    {&__uuidof(::Options), L"Options", &Make<OptionsObject>},
    {&__uuidof(::clsSystemState), L"clsSystemState", &Make<SystemStateObject>},
    {&__uuidof(::CDummyCall), L"CDummyCall", &Make<DummyCallObject>},
    {&__uuidof(::cBase64), L"cBase64", &Make<Base64Object>},
    {&__uuidof(::OnduraTime), L"time", &Make<TimeObject>},
}};

}  // namespace

std::span<const PublicClass> PublicClasses() { return kClasses; }

}  // namespace ondura
