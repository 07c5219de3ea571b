#pragma once

namespace ondura {

// Whether the backup set of a service-mode job depends on drives that only the person's session has.
class MappedDrives {
 public:
  virtual ~MappedDrives() = default;

  // True keeps the compare list from being built. No list of drives has ever been filled in this component,
  // so the plain answer is no.
  virtual bool CheckServiceModeMappedDrive() { return false; }
};

}  // namespace ondura
