#include "machines/simulated/SimulatedFiles.h"

#include <algorithm>

#include "text/text.h"

namespace ondura {
namespace {

class SimulatedFileWriter : public FileWriter {
 public:
  SimulatedFileWriter(MemoryDisk& disk, std::string_view path) : disk_(disk), path_(path) {}
  bool Append(std::string_view bytes) override { return disk_.Extend(path_, bytes); }

 private:
  MemoryDisk& disk_;
  std::string path_;
};

class SimulatedFileWatch : public FileWatch {
 public:
  SimulatedFileWatch(const MemoryDisk& disk, std::string_view path) : disk_(disk), path_(path) {}

  bool MayHaveChanged() override {
    const MemoryDisk::Node* node = disk_.Find(path_);
    const std::uint64_t version = node != nullptr ? node->version : 0;
    const bool may_have_changed = seen_ != version;
    seen_ = version;
    return may_have_changed;
  }

 private:
  const MemoryDisk& disk_;
  std::string path_;
  std::optional<std::uint64_t> seen_;
};

}  // namespace

const MemoryDisk::Node* SimulatedFiles::FindFile(std::string_view path) const {
  const MemoryDisk::Node* node = disk_.Find(path);
  return node != nullptr && !node->is_folder && !node->leads_off_drive ? node : nullptr;
}

bool SimulatedFiles::Exists(std::string_view path) { return FindFile(path) != nullptr; }

std::optional<std::uint64_t> SimulatedFiles::Size(std::string_view path) {
  const MemoryDisk::Node* file = FindFile(path);
  if (file == nullptr) return std::nullopt;
  return file->bytes.size();
}

std::optional<LocalTime> SimulatedFiles::Modified(std::string_view path) {
  const MemoryDisk::Node* file = FindFile(path);
  if (file == nullptr) return std::nullopt;
  return file->modified;
}

std::optional<std::string> SimulatedFiles::Read(std::string_view path) {
  const MemoryDisk::Node* file = disk_.FindReadable(path);
  if (file == nullptr) return std::nullopt;
  return file->bytes;
}

std::optional<std::string> SimulatedFiles::ReadTrusted(std::string_view path) {
  const MemoryDisk::Node* file = disk_.FindReadable(path);
  if (file == nullptr || file->is_foreign) return std::nullopt;
  return file->bytes;
}

std::optional<std::string> SimulatedFiles::ReadHead(std::string_view path, std::size_t limit_bytes) {
  const MemoryDisk::Node* file = disk_.FindReadable(path);
  if (file == nullptr) return std::nullopt;
  return file->bytes.substr(0, limit_bytes);
}

std::optional<std::string> SimulatedFiles::ReadPart(std::string_view path, std::uint64_t offset,
                                                    std::size_t limit_bytes) {
  const MemoryDisk::Node* file = disk_.FindReadable(path);
  if (file == nullptr) return std::nullopt;
  return file->bytes.substr(std::min<std::uint64_t>(offset, file->bytes.size()), limit_bytes);
}

bool SimulatedFiles::Write(std::string_view path, std::string_view bytes, IfPresent if_present) {
  if (Exists(path)) return if_present == IfPresent::kReplace && disk_.Replace(path, bytes);
  return disk_.Store(path, bytes);
}

bool SimulatedFiles::MayBeMade(std::string_view path, IfMissing if_missing) const {
  return if_missing == IfMissing::kCreate && FindFile(path) == nullptr;
}

bool SimulatedFiles::Append(std::string_view path, std::string_view bytes, IfMissing if_missing) {
  return MayBeMade(path, if_missing) ? disk_.Store(path, bytes) : disk_.Extend(path, bytes);
}

bool SimulatedFiles::Patch(std::string_view path, std::uint64_t offset, std::string_view bytes) {
  const MemoryDisk::Node* file = disk_.FindReadable(path);
  if (file == nullptr) return false;
  std::string patched = file->bytes;
  patched.resize(std::max<std::size_t>(patched.size(), offset + bytes.size()));
  patched.replace(offset, bytes.size(), bytes);
  return disk_.Store(path, patched);
}

std::unique_ptr<FileWriter> SimulatedFiles::OpenWriter(std::string_view path, IfPresent if_present) {
  if (!Write(path, "", if_present)) return nullptr;
  return std::make_unique<SimulatedFileWriter>(disk_, path);
}

std::unique_ptr<FileWriter> SimulatedFiles::OpenAppender(std::string_view path, IfMissing if_missing) {
  if (!Append(path, "", if_missing)) return nullptr;
  return std::make_unique<SimulatedFileWriter>(disk_, path);
}

bool SimulatedFiles::Remove(std::string_view path, Removal removal) {
  return disk_.RemoveFile(path, removal);
}

bool SimulatedFiles::Copy(std::string_view from, std::string_view to) { return disk_.Copy(from, to); }

bool SimulatedFolders::Exists(std::string_view path) {
  const MemoryDisk::Node* node = disk_.Find(path);
  return node != nullptr && node->is_folder;
}

bool SimulatedFolders::List(std::string_view path, const std::function<Visit(const FolderEntry&)>& visit) {
  const MemoryDisk::Node* folder = disk_.Find(path);
  if (folder == nullptr || !folder->is_folder || folder->refuses_access) return false;
  for (const std::string& child : disk_.Children(path)) {
    const MemoryDisk::Node* node = disk_.Find(child);
    if (node == nullptr) continue;  // gone since the listing began
    const std::string_view name = FileNameOf(node->path);
    if (!node->is_folder && name.starts_with(kNewContentPrefix)) continue;
    if (visit({name, node->is_folder, node->bytes.size(), node->modified, node->leads_off_drive}) ==
        Visit::kStop) {
      break;
    }
  }
  return true;
}

std::unique_ptr<FileWatch> SimulatedFileWatches::Watch(std::string_view path) {
  return std::make_unique<SimulatedFileWatch>(disk_, path);
}

std::string SimulatedDrives::ShortPath(std::string_view path) {
  return disk_.Find(path) != nullptr ? disk_.ShortPath(path) : "";
}

std::string SimulatedDrives::LongPath(std::string_view path) {
  const MemoryDisk::Node* node = disk_.Find(path);
  if (node == nullptr) return "";
  const bool is_root = node->path.find('\\') == std::string::npos;
  return is_root ? node->path + '\\' : node->path;
}

std::shared_ptr<const IniText> SimulatedProfileFiles::Load(std::string_view path) {
  const MemoryDisk::Node* file = disk_.FindReadable(path);
  if (file == nullptr) return nullptr;
  Known& known = known_[file->path];
  if (known.text == nullptr || known.version != file->version) {
    known = {file->version, std::make_shared<const IniText>(file->bytes, code_page())};
  }
  return known.text;
}

bool SimulatedProfileFiles::Store(std::string_view path, const IniText& text) {
  return disk_.Store(path, text.bytes());
}

bool SimulatedProfileFiles::MayReplace(std::string_view path) {
  return disk_.Find(path) == nullptr || disk_.FindReadable(path) != nullptr;
}

}  // namespace ondura
