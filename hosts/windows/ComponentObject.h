#pragma once

#include "machines/win32/windows_api.h"

#include <oaidl.h>

#include <initializer_list>
#include <string>
#include <string_view>

namespace ondura {

// This thread's apartment. All objects of the component live in it and go before it.
class Apartment {
 public:
  Apartment();
  ~Apartment();
  Apartment(const Apartment&) = delete;
  Apartment& operator=(const Apartment&) = delete;
};

// An object of one of the component's public classes. Its operations are called by name, as a script calls
// them, so that a host works with every release of the component.
class ComponentObject {
 public:
  // Throws HostError when the component is not registered or can't be loaded.
  explicit ComponentObject(std::string_view class_name);
  ~ComponentObject();
  ComponentObject(const ComponentObject&) = delete;
  ComponentObject& operator=(const ComponentObject&) = delete;

  [[nodiscard]] bool Has(std::string_view operation) const;

  // Throws HostError if the operation does not exist or it does not take these texts.
  void Call(std::string_view operation, std::initializer_list<std::string_view> texts = {}) const;

 private:
  std::string name_;
  IDispatch* object_ = nullptr;
};

}  // namespace ondura
