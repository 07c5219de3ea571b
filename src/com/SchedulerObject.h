#pragma once

#include "com/DispatchObject.h"

namespace ondura {

// The class Scheduler of the type library.
class SchedulerObject : public DispatchObject<IScheduler> {
 public:
  STDMETHODIMP Sch_SortBuildDate(BSTR date, BSTR* key) override;
  STDMETHODIMP Sch_Load_ScheduleData(short* due) override;
  STDMETHODIMP sch_CheckRepeatAppend() override;
  STDMETHODIMP ValidateAddDay(BSTR date, BSTR* next) override;
  STDMETHODIMP sch_changefiledata(BSTR word) override;
  STDMETHODIMP Sch_addhour_list() override;
  STDMETHODIMP Sch_addDay_list() override;
  STDMETHODIMP Sch_addweekDay_list() override;
  STDMETHODIMP Sch_addweekEnd_list() override;
  STDMETHODIMP Sch_addWeek_list() override;
  STDMETHODIMP Sch_addMonth_list() override;
  STDMETHODIMP ConvertToDate(BSTR text, BSTR* date) override;
  STDMETHODIMP ConvertToTime(BSTR text, BSTR* time_text) override;

 private:
  [[nodiscard]] Scheduler& core() const { return component().scheduler(); }
};

}  // namespace ondura
