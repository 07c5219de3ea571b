#include "machines/simulated/RecordingFiles.h"

#include "machines/simulated/MemoryDisk.h"

namespace ondura {
namespace {

using enum CallKind;

class RecordingFileWriter : public ForwardingFileWriter {
 public:
  RecordingFileWriter(std::unique_ptr<FileWriter> next, std::string_view path, CallGate& gate)
      : ForwardingFileWriter(std::move(next)), path_(path), gate_(gate) {}

  bool Append(std::string_view bytes) override {
    return gate_.Write("FileWriter.Append", path_, bytes,
                       [&](std::string_view part) { return ForwardingFileWriter::Append(part); });
  }

 private:
  std::string path_;
  CallGate& gate_;
};

class RecordingFileWatch : public ForwardingFileWatch {
 public:
  RecordingFileWatch(std::unique_ptr<FileWatch> next, std::string_view path, CallGate& gate)
      : ForwardingFileWatch(std::move(next)), path_(path), gate_(gate) {}

  bool MayHaveChanged() override {
    return gate_.Note(kLook, "FileWatch.MayHaveChanged", PathArgument{path_},
                      [&] { return ForwardingFileWatch::MayHaveChanged(); });
  }

 private:
  std::string path_;
  CallGate& gate_;
};

std::string KeyText(const IniKey& key) {
  std::string file;
  for (const char letter : key.file) {
    if (letter != '\\' || !file.ends_with('\\')) file += letter;
  }
  return file.append(" [").append(key.section).append("] ").append(key.key);
}

}  // namespace

bool RecordingFiles::Exists(std::string_view path) {
  return gate_.Call(kLook, "Files.Exists", PathArgument{path}, false,
                    [&] { return ForwardingFiles::Exists(path); });
}

std::optional<std::uint64_t> RecordingFiles::Size(std::string_view path) {
  return gate_.Call(kLook, "Files.Size", PathArgument{path}, std::optional<std::uint64_t>{},
                    [&] { return ForwardingFiles::Size(path); });
}

std::optional<LocalTime> RecordingFiles::Modified(std::string_view path) {
  return gate_.Call(kLook, "Files.Modified", PathArgument{path}, std::optional<LocalTime>{},
                    [&] { return ForwardingFiles::Modified(path); });
}

std::optional<std::string> RecordingFiles::Read(std::string_view path) {
  return gate_.Call(kLook, "Files.Read", PathArgument{path}, std::optional<std::string>{},
                    [&] { return ForwardingFiles::Read(path); });
}

std::optional<std::string> RecordingFiles::ReadAlone(std::string_view path) {
  return gate_.Call(kLook, "Files.ReadAlone", PathArgument{path}, std::optional<std::string>{},
                    [&] { return ForwardingFiles::ReadAlone(path); });
}

std::optional<std::string> RecordingFiles::ReadTrusted(std::string_view path) {
  return gate_.Call(kLook, "Files.ReadTrusted", PathArgument{path}, std::optional<std::string>{},
                    [&] { return ForwardingFiles::ReadTrusted(path); });
}

std::optional<std::string> RecordingFiles::ReadHead(std::string_view path, std::size_t limit_bytes) {
  return gate_.Call(kLook, "Files.ReadHead", PathArgument{path}, std::optional<std::string>{},
                    [&] { return ForwardingFiles::ReadHead(path, limit_bytes); });
}

std::optional<std::string> RecordingFiles::ReadPart(std::string_view path, std::uint64_t offset,
                                                    std::size_t limit_bytes) {
  return gate_.Call(kLook, "Files.ReadPart", PathArgument{path}, std::optional<std::string>{},
                    [&] { return ForwardingFiles::ReadPart(path, offset, limit_bytes); });
}

bool RecordingFiles::Write(std::string_view path, std::string_view bytes, IfPresent if_present) {
  return gate_.Write("Files.Write", path, bytes, [&](std::string_view part) {
    // What is replaced is torn beside the file that is there.
    if (part.size() < bytes.size() && ForwardingFiles::Exists(path)) return false;
    return ForwardingFiles::Write(path, part, if_present);
  });
}

bool RecordingFiles::Append(std::string_view path, std::string_view bytes, IfMissing if_missing) {
  return gate_.Write("Files.Append", path, bytes,
                     [&](std::string_view part) { return ForwardingFiles::Append(path, part, if_missing); });
}

bool RecordingFiles::Patch(std::string_view path, std::uint64_t offset, std::string_view bytes) {
  return gate_.Write("Files.Patch", path, bytes,
                     [&](std::string_view part) { return ForwardingFiles::Patch(path, offset, part); });
}

std::unique_ptr<FileWriter> RecordingFiles::Recorded(std::unique_ptr<FileWriter> writer,
                                                     std::string_view path) {
  if (writer == nullptr) return nullptr;
  return std::make_unique<RecordingFileWriter>(std::move(writer), path, gate_);
}

std::unique_ptr<FileWriter> RecordingFiles::OpenWriter(std::string_view path, IfPresent if_present) {
  return gate_.Call(kChange, "Files.OpenWriter", PathArgument{path}, std::unique_ptr<FileWriter>{},
                    [&] { return Recorded(ForwardingFiles::OpenWriter(path, if_present), path); });
}

std::unique_ptr<FileWriter> RecordingFiles::OpenAppender(std::string_view path, IfMissing if_missing) {
  return gate_.Call(kChange, "Files.OpenAppender", PathArgument{path}, std::unique_ptr<FileWriter>{},
                    [&] { return Recorded(ForwardingFiles::OpenAppender(path, if_missing), path); });
}

bool RecordingFiles::Remove(std::string_view path, Removal removal) {
  return gate_.Call(kChange, "Files.Remove", PathArgument{path}, false,
                    [&] { return ForwardingFiles::Remove(path, removal); });
}

bool RecordingFiles::Copy(std::string_view from, std::string_view to) {
  const auto both = [&] { return std::string(from) + " to " + std::string(to); };
  return gate_.Call(kChange, "Files.Copy", both, false, [&] { return ForwardingFiles::Copy(from, to); });
}

bool RecordingFolders::Exists(std::string_view path) {
  return gate_.Call(kLook, "Folders.Exists", PathArgument{path}, false,
                    [&] { return ForwardingFolders::Exists(path); });
}

bool RecordingFolders::Make(std::string_view path) {
  return gate_.Call(kChange, "Folders.Make", PathArgument{path}, false,
                    [&] { return ForwardingFolders::Make(path); });
}

bool RecordingFolders::Remove(std::string_view path, Removal removal) {
  return gate_.Call(kChange, "Folders.Remove", PathArgument{path}, false,
                    [&] { return ForwardingFolders::Remove(path, removal); });
}

bool RecordingFolders::List(std::string_view path, const std::function<Visit(const FolderEntry&)>& visit) {
  return gate_.Call(kLook, "Folders.List", PathArgument{path}, false,
                    [&] { return ForwardingFolders::List(path, visit); });
}

std::unique_ptr<FileWatch> RecordingFileWatches::Watch(std::string_view path) {
  return gate_.Note(kLook, "FileWatches.Watch", PathArgument{path}, [&] {
    return std::make_unique<RecordingFileWatch>(ForwardingFileWatches::Watch(path), path, gate_);
  });
}

std::vector<std::string> RecordingDrives::Roots() {
  return gate_.Call(kLook, "Drives.Roots", "", std::vector<std::string>{},
                    [&] { return ForwardingDrives::Roots(); });
}

DriveKind RecordingDrives::KindOf(std::string_view root) {
  return gate_.Call(kLook, "Drives.KindOf", PathArgument{root}, DriveKind::kUnknown,
                    [&] { return ForwardingDrives::KindOf(root); });
}

std::optional<std::uint64_t> RecordingDrives::FreeBytes(std::string_view path) {
  return gate_.Call(kLook, "Drives.FreeBytes", PathArgument{path}, std::optional<std::uint64_t>{},
                    [&] { return ForwardingDrives::FreeBytes(path); });
}

std::optional<std::uint64_t> RecordingDrives::TotalBytes(std::string_view path) {
  return gate_.Call(kLook, "Drives.TotalBytes", PathArgument{path}, std::optional<std::uint64_t>{},
                    [&] { return ForwardingDrives::TotalBytes(path); });
}

std::string RecordingDrives::ShortPath(std::string_view path) {
  return gate_.Call(kLook, "Drives.ShortPath", PathArgument{path}, std::string{},
                    [&] { return ForwardingDrives::ShortPath(path); });
}

std::string RecordingDrives::LongPath(std::string_view path) {
  return gate_.Call(kLook, "Drives.LongPath", PathArgument{path}, std::string{},
                    [&] { return ForwardingDrives::LongPath(path); });
}

std::string RecordingDrives::LocalDataFolder() {
  return gate_.Call(kLook, "Drives.LocalDataFolder", "", std::string{},
                    [&] { return ForwardingDrives::LocalDataFolder(); });
}

std::string RecordingDrives::SystemFolder() {
  return gate_.Call(kLook, "Drives.SystemFolder", "", std::string{},
                    [&] { return ForwardingDrives::SystemFolder(); });
}

std::string RecordingProfileFiles::ReadString(const IniKey& key) {
  return gate_.Call(
      kLook, "ProfileFiles.ReadString", [&] { return KeyText(key); }, std::string{},
      [&] { return ForwardingProfileFiles::ReadString(key); });
}

std::string RecordingProfileFiles::ReadLongString(const IniKey& key) {
  return gate_.Call(
      kLook, "ProfileFiles.ReadLongString", [&] { return KeyText(key); }, std::string{},
      [&] { return ForwardingProfileFiles::ReadLongString(key); });
}

int RecordingProfileFiles::ReadInt(const IniKey& key, int fallback) {
  return gate_.Call(
      kLook, "ProfileFiles.ReadInt", [&] { return KeyText(key); }, fallback,
      [&] { return ForwardingProfileFiles::ReadInt(key, fallback); });
}

bool RecordingProfileFiles::WriteString(const IniKey& key, std::string_view value) {
  return gate_.Call(
      kChange, "ProfileFiles.WriteString", [&] { return KeyText(key).append("=").append(value); }, false,
      [&] { return ForwardingProfileFiles::WriteString(key, value); });
}

}  // namespace ondura
