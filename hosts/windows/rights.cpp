#include "rights.h"

#include "machines/win32/windows_api.h"
// Need what the header above declares.
#include <aclapi.h>
#include <sddl.h>

#include <array>
#include <cstddef>
#include <memory>

#include "HostError.h"
#include "machines/win32/Win32Machine.h"
#include "machines/win32/paths.h"
#include "machines/win32/text_edges.h"
#include "text/text.h"

namespace ondura {

namespace {

// System and administrators: everything, down to the last file. Users: to read this folder and its own files.
constexpr const wchar_t* kFolderRights = L"O:BAD:P(A;OICI;FA;;;SY)(A;OICI;FA;;;BA)(A;OINP;0x1200a9;;;BU)";
// Only what the folder hands down.
constexpr const wchar_t* kFileRights = L"O:BAD:";

// NOLINTNEXTLINE(misc-redundant-expression)
constexpr DWORD kMayChange = FILE_GENERIC_READ | FILE_GENERIC_WRITE | FILE_GENERIC_EXECUTE | DELETE;

struct LocalMemory {
  void operator()(void* memory) const { LocalFree(memory); }
};
using UniqueDescriptor = std::unique_ptr<void, LocalMemory>;
using UniqueAcl = std::unique_ptr<ACL, LocalMemory>;

[[noreturn]] void ThrowRights(const std::string& path, DWORD code) {
  throw HostError("can't set the rights on " + path + ": " + SystemText(code) +
                  ". Run this as an administrator, on a drive that keeps rights (NTFS).");
}

void SetRights(const std::string& path, const wchar_t* text, SECURITY_INFORMATION what) {
  PSECURITY_DESCRIPTOR made = nullptr;
  if (ConvertStringSecurityDescriptorToSecurityDescriptorW(text, SDDL_REVISION_1, &made, nullptr) == FALSE) {
    ThrowRights(path, GetLastError());
  }
  const UniqueDescriptor rights{made};
  PSID owner = nullptr;
  PACL list = nullptr;
  BOOL flag = FALSE;
  BOOL has_list = FALSE;
  GetSecurityDescriptorOwner(rights.get(), &owner, &flag);
  GetSecurityDescriptorDacl(rights.get(), &has_list, &list, &flag);
  std::wstring name = WidePath(path);
  const DWORD code = SetNamedSecurityInfoW(name.data(), SE_FILE_OBJECT, what, owner, nullptr, list, nullptr);
  if (code != ERROR_SUCCESS) ThrowRights(path, code);
}

// The rights would go to the folder that the link leads to.
void RefuseLink(const std::string& path) {
  const DWORD attributes = GetFileAttributesW(WidePath(path).c_str());
  if (attributes == INVALID_FILE_ATTRIBUTES || (attributes & FILE_ATTRIBUTE_REPARSE_POINT) == 0) return;
  throw HostError(path +
                  " is a link to another folder; remove the link, or name that folder itself with --data.");
}

// Whoever made a file could change it for ever.
void TakeOver(const Machine& machine, const std::string& folder) {
  machine.folders.List(folder, [&](const FolderEntry& entry) {
    const std::string path = WithBackslash(folder) + std::string{entry.name};
    if (!entry.is_folder) {
      // Accounts that may work with their data have been let to this file by name.
      const bool is_shared = EqualsIgnoringCase(entry.name, "UserName.ini");
      SetRights(path, kFileRights,
                is_shared ? OWNER_SECURITY_INFORMATION
                          : OWNER_SECURITY_INFORMATION | DACL_SECURITY_INFORMATION |
                                UNPROTECTED_DACL_SECURITY_INFORMATION);
    }
    return Visit::kContinue;
  });
}

}  // namespace

void SecureDataFolder(const std::string& folder) {
  const std::string path{WithoutTrailingSeparators(folder)};
  if (path.size() < 3) {
    throw HostError("the data folder " + folder + " is a whole drive; name a folder on it with --data.",
                    kExitUsage);
  }
  const auto owner = MakeWin32Machine();
  const Machine& machine = owner->machine();
  machine.processes.EnablePrivilege("SeTakeOwnershipPrivilege");
  machine.processes.EnablePrivilege("SeRestorePrivilege");
  for (const std::string& part : {path, path + "\\OxWin"}) {
    RefuseLink(part);
    if (!machine.folders.Exists(part) && !machine.folders.Make(part)) {
      ThrowLastError("can't make the folder " + part);
    }
  }
  constexpr SECURITY_INFORMATION kOwnerAndList = OWNER_SECURITY_INFORMATION | DACL_SECURITY_INFORMATION;
  SetRights(path, kFolderRights, kOwnerAndList | PROTECTED_DACL_SECURITY_INFORMATION);
  SetRights(path + "\\OxWin", kFileRights, kOwnerAndList | UNPROTECTED_DACL_SECURITY_INFORMATION);
  TakeOver(machine, path);
  TakeOver(machine, path + "\\OxWin");
}

void AllowToChange(const std::string& path, const std::string& account) {
  alignas(SID) std::array<std::byte, SECURITY_MAX_SID_SIZE> id{};
  std::array<wchar_t, 256> domain{};
  auto id_size = static_cast<DWORD>(id.size());
  auto domain_size = static_cast<DWORD>(domain.size());
  SID_NAME_USE use{};
  if (LookupAccountNameW(nullptr, ToWide(account).c_str(), id.data(), &id_size, domain.data(), &domain_size,
                         &use) == FALSE) {
    ThrowLastError("Windows knows no account '" + account + "'");
  }
  std::wstring name = WidePath(path);
  PACL old_list = nullptr;
  PSECURITY_DESCRIPTOR found = nullptr;
  DWORD code = GetNamedSecurityInfoW(name.data(), SE_FILE_OBJECT, DACL_SECURITY_INFORMATION, nullptr, nullptr,
                                     &old_list, nullptr, &found);
  if (code != ERROR_SUCCESS) ThrowRights(path, code);
  const UniqueDescriptor held{found};
  EXPLICIT_ACCESS_W entry{};
  entry.grfAccessPermissions = kMayChange;
  entry.grfAccessMode = GRANT_ACCESS;
  entry.grfInheritance = IsFolder(name) ? SUB_CONTAINERS_AND_OBJECTS_INHERIT : NO_INHERITANCE;
  BuildTrusteeWithSidW(&entry.Trustee, id.data());
  PACL new_list = nullptr;
  code = SetEntriesInAclW(1, &entry, old_list, &new_list);
  if (code != ERROR_SUCCESS) ThrowRights(path, code);
  const UniqueAcl rights{new_list};
  code = SetNamedSecurityInfoW(name.data(), SE_FILE_OBJECT, DACL_SECURITY_INFORMATION, nullptr, nullptr,
                               rights.get(), nullptr);
  if (code != ERROR_SUCCESS) ThrowRights(path, code);
}

}  // namespace ondura
