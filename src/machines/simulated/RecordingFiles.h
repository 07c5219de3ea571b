#pragma once

#include "machines/simulated/CallGate.h"
#include "platform/forwarding.h"

namespace ondura {

// The ports of files and places as the component sees them: each call passes the gate.

class RecordingFiles : public ForwardingFiles {
 public:
  RecordingFiles(Files& next, CallGate& gate) : ForwardingFiles(next), gate_(gate) {}
  bool Exists(std::string_view path) override;
  std::optional<std::uint64_t> Size(std::string_view path) override;
  std::optional<LocalTime> Modified(std::string_view path) override;
  std::optional<std::string> Read(std::string_view path) override;
  std::optional<std::string> ReadAlone(std::string_view path) override;
  std::optional<std::string> ReadTrusted(std::string_view path) override;
  std::optional<std::string> ReadHead(std::string_view path, std::size_t limit_bytes) override;
  std::optional<std::string> ReadPart(std::string_view path, std::uint64_t offset,
                                      std::size_t limit_bytes) override;
  bool Write(std::string_view path, std::string_view bytes, IfPresent if_present) override;
  bool Append(std::string_view path, std::string_view bytes, IfMissing if_missing) override;
  bool Patch(std::string_view path, std::uint64_t offset, std::string_view bytes) override;
  std::unique_ptr<FileWriter> OpenWriter(std::string_view path, IfPresent if_present) override;
  std::unique_ptr<FileWriter> OpenAppender(std::string_view path, IfMissing if_missing) override;
  bool Remove(std::string_view path, Removal removal) override;
  bool Copy(std::string_view from, std::string_view to) override;

 private:
  std::unique_ptr<FileWriter> Recorded(std::unique_ptr<FileWriter> writer, std::string_view path);

  CallGate& gate_;
};

class RecordingFolders : public ForwardingFolders {
 public:
  RecordingFolders(Folders& next, CallGate& gate) : ForwardingFolders(next), gate_(gate) {}
  bool Exists(std::string_view path) override;
  bool Make(std::string_view path) override;
  bool Remove(std::string_view path, Removal removal) override;
  bool List(std::string_view path, const std::function<Visit(const FolderEntry&)>& visit) override;

 private:
  CallGate& gate_;
};

class RecordingFileWatches : public ForwardingFileWatches {
 public:
  RecordingFileWatches(FileWatches& next, CallGate& gate) : ForwardingFileWatches(next), gate_(gate) {}
  std::unique_ptr<FileWatch> Watch(std::string_view path) override;

 private:
  CallGate& gate_;
};

class RecordingDrives : public ForwardingDrives {
 public:
  RecordingDrives(Drives& next, CallGate& gate) : ForwardingDrives(next), gate_(gate) {}
  std::vector<std::string> Roots() override;
  DriveKind KindOf(std::string_view root) override;
  std::optional<std::uint64_t> FreeBytes(std::string_view path) override;
  std::optional<std::uint64_t> TotalBytes(std::string_view path) override;
  std::string ShortPath(std::string_view path) override;
  std::string LongPath(std::string_view path) override;
  std::string SystemFolder() override;
  std::string LocalDataFolder() override;

 private:
  CallGate& gate_;
};

class RecordingProfileFiles : public ForwardingProfileFiles {
 public:
  RecordingProfileFiles(ProfileFiles& next, CallGate& gate) : ForwardingProfileFiles(next), gate_(gate) {}
  std::string ReadString(const IniKey& key) override;
  std::string ReadLongString(const IniKey& key) override;
  int ReadInt(const IniKey& key, int fallback) override;
  bool WriteString(const IniKey& key, std::string_view value) override;

 private:
  CallGate& gate_;
};

}  // namespace ondura
