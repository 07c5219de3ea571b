#include "com/SchedulerObject.h"

namespace ondura {

STDMETHODIMP SchedulerObject::Sch_SortBuildDate(BSTR date, BSTR* key) {
  return Answer(key, [&] { return core().Sch_SortBuildDate(TextOf(date)); });
}

STDMETHODIMP SchedulerObject::Sch_Load_ScheduleData(short* due) {
  return Answer(due, [&] { return core().Sch_Load_ScheduleData(); });
}

STDMETHODIMP SchedulerObject::sch_CheckRepeatAppend() {
  return Run([&] { core().sch_CheckRepeatAppend(); });
}

STDMETHODIMP SchedulerObject::ValidateAddDay(BSTR date, BSTR* next) {
  return Answer(next, [&] { return core().ValidateAddDay(TextOf(date)); });
}

STDMETHODIMP SchedulerObject::sch_changefiledata(BSTR word) {
  return Run([&] { core().sch_changefiledata(TextOf(word)); });
}

STDMETHODIMP SchedulerObject::Sch_addhour_list() {
  return Run([&] { core().Sch_addhour_list(); });
}

STDMETHODIMP SchedulerObject::Sch_addDay_list() {
  return Run([&] { core().Sch_addDay_list(); });
}

STDMETHODIMP SchedulerObject::Sch_addweekDay_list() {
  return Run([&] { core().Sch_addweekDay_list(); });
}

STDMETHODIMP SchedulerObject::Sch_addweekEnd_list() {
  return Run([&] { core().Sch_addweekEnd_list(); });
}

STDMETHODIMP SchedulerObject::Sch_addWeek_list() {
  return Run([&] { core().Sch_addWeek_list(); });
}

STDMETHODIMP SchedulerObject::Sch_addMonth_list() {
  return Run([&] { core().Sch_addMonth_list(); });
}

STDMETHODIMP SchedulerObject::ConvertToDate(BSTR text, BSTR* date) {
  return Answer(date, [&] { return core().ConvertToDate(TextOf(text)); });
}

STDMETHODIMP SchedulerObject::ConvertToTime(BSTR text, BSTR* time_text) {
  return Answer(time_text, [&] { return core().ConvertToTime(TextOf(text)); });
}

}  // namespace ondura
