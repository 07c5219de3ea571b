#pragma once

#include <map>
#include <memory>

#include "machines/portable/IniProfileFiles.h"
#include "machines/simulated/MemoryDisk.h"
#include "machines/simulated/surroundings.h"
#include "platform/FileWatch.h"
#include "platform/Files.h"
#include "platform/Folders.h"

namespace ondura {

// The ports that work on a memory disk, as any process sees it.

class SimulatedFiles : public Files {
 public:
  explicit SimulatedFiles(MemoryDisk& disk) : disk_(disk) {}
  bool Exists(std::string_view path) override;
  std::optional<std::uint64_t> Size(std::string_view path) override;
  std::optional<LocalTime> Modified(std::string_view path) override;
  std::optional<std::string> Read(std::string_view path) override;
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
  const MemoryDisk::Node* FindFile(std::string_view path) const;
  bool MayBeMade(std::string_view path, IfMissing if_missing) const;

  MemoryDisk& disk_;
};

class SimulatedFolders : public Folders {
 public:
  explicit SimulatedFolders(MemoryDisk& disk) : disk_(disk) {}
  bool Exists(std::string_view path) override;
  bool Make(std::string_view path) override { return disk_.MakeFolder(path); }
  bool Remove(std::string_view path, Removal removal) override { return disk_.RemoveFolder(path, removal); }
  bool List(std::string_view path, const std::function<Visit(const FolderEntry&)>& visit) override;

 private:
  MemoryDisk& disk_;
};

class SimulatedFileWatches : public FileWatches {
 public:
  explicit SimulatedFileWatches(MemoryDisk& disk) : disk_(disk) {}
  std::unique_ptr<FileWatch> Watch(std::string_view path) override;

 private:
  MemoryDisk& disk_;
};

class SimulatedDrives : public Drives {
 public:
  SimulatedDrives(MemoryDisk& disk, const Surroundings& surroundings)
      : disk_(disk), surroundings_(surroundings) {}
  std::vector<std::string> Roots() override { return disk_.Roots(); }
  DriveKind KindOf(std::string_view root) override { return disk_.KindOf(root); }
  std::optional<std::uint64_t> FreeBytes(std::string_view path) override { return disk_.FreeBytes(path); }
  std::optional<std::uint64_t> TotalBytes(std::string_view path) override { return disk_.TotalBytes(path); }
  std::string ShortPath(std::string_view path) override;
  std::string LongPath(std::string_view path) override;
  std::string SystemFolder() override { return surroundings_.system_folder; }
  std::string LocalDataFolder() override { return surroundings_.local_data_folder; }

 private:
  MemoryDisk& disk_;
  const Surroundings& surroundings_;
};

// Keeps the last form of each file in mind, because a pass reads many keys of few files.
class SimulatedProfileFiles : public IniProfileFiles {
 public:
  SimulatedProfileFiles(MemoryDisk& disk, const CodePageTable& code_page)
      : IniProfileFiles(code_page), disk_(disk) {}

 protected:
  std::shared_ptr<const IniText> Load(std::string_view path) override;
  bool Store(std::string_view path, const IniText& text) override;
  bool MayReplace(std::string_view path) override;

 private:
  struct Known {
    std::uint64_t version = 0;
    std::shared_ptr<const IniText> text;
  };

  MemoryDisk& disk_;
  std::map<std::string, Known> known_;  // by the path as made
};

}  // namespace ondura
