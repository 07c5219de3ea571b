#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "platform/local_time.h"

namespace ondura {

enum class IfMissing { kFail, kCreate };
enum class IfPresent { kFail, kReplace };

// kForce also removes what is marked read-only.
enum class Removal { kPlain, kForce };

// The new content of a file is written beside it under a name with this prefix, which then replaces the old
// one. Only a killed process leaves such a file behind. Listings leave it out, and the next write reuses it.
inline constexpr std::string_view kNewContentPrefix = "~ondura-new-";

// A file held open for writing in order. Destruction closes it.
class FileWriter {
 public:
  virtual ~FileWriter() = default;

  // True if every byte reached the file. False leaves some of them in it, or none.
  virtual bool Append(std::string_view bytes) = 0;
};

// Whole files, byte for byte.
//
// Paths are UTF-8 with backslashes and a drive ("C:\x\y"); letter case and doubled backslashes do not
// matter. Every call opens, works and closes; nothing is locked against other processes. On Windows: the
// scripting file-system object's calls, made on CreateFileW, ReadFile, WriteFile, DeleteFileW, CopyFileW,
// GetFileAttributesExW.
class Files {
 public:
  virtual ~Files() = default;

  // True for a file; false for a folder and for a path that does not exist.
  virtual bool Exists(std::string_view path) = 0;

  // In bytes. std::nullopt if the path is not a file or can't be looked at.
  virtual std::optional<std::uint64_t> Size(std::string_view path) = 0;

  // The time of the last write. std::nullopt as for Size.
  virtual std::optional<LocalTime> Modified(std::string_view path) = 0;

  // All bytes. std::nullopt if the path is not a file or can't be opened or read.
  virtual std::optional<std::string> Read(std::string_view path) = 0;

  // The same, but std::nullopt while another program has the file open for writing, so that nobody reads half
  // of a write. Only Windows knows of open files (FILE_SHARE_READ alone); elsewhere this is Read.
  virtual std::optional<std::string> ReadAlone(std::string_view path) { return Read(path); }

  // The bytes of a file that only those with every right on the machine can have made: its owner is the
  // account of this process, the system or the group of administrators. std::nullopt for anybody else's file.
  // Asks the opened file, so that it can't be exchanged in between. On Windows: GetSecurityInfo.
  virtual std::optional<std::string> ReadTrusted(std::string_view path) = 0;

  // At most the first `limit_bytes` bytes. std::nullopt as for Read.
  virtual std::optional<std::string> ReadHead(std::string_view path, std::size_t limit_bytes) = 0;

  // At most `limit_bytes` bytes from byte `offset` (from 0) on; fewer at the file's end, empty after it.
  // std::nullopt as for Read.
  virtual std::optional<std::string> ReadPart(std::string_view path, std::uint64_t offset,
                                              std::size_t limit_bytes) = 0;

  // Makes or replaces the file. A file that is replaced keeps its rights, and is seen with its old or its new
  // content by whoever looks, also after a kill or on a full disk: the new content is made beside it and then
  // takes its name (on Windows ReplaceFileW). Where that can't be done it is written over in place. False
  // leaves a file as it was; a new one may be missing or cut short.
  virtual bool Write(std::string_view path, std::string_view bytes, IfPresent if_present) = 0;

  // False if not every byte was written, or the file is missing and may not be made. A part of the bytes may
  // be in the file then.
  virtual bool Append(std::string_view path, std::string_view bytes, IfMissing if_missing) = 0;

  // Overwrites in place from byte `offset` (from 0) on; the rest of the file stays. False for a missing
  // file, which is not made.
  virtual bool Patch(std::string_view path, std::uint64_t offset, std::string_view bytes) = 0;

  // Null when the file can't be opened.
  virtual std::unique_ptr<FileWriter> OpenWriter(std::string_view path, IfPresent if_present) = 0;

  // Continues after the file's last byte. Null when the file can't be opened.
  virtual std::unique_ptr<FileWriter> OpenAppender(std::string_view path, IfMissing if_missing) = 0;

  // False if the file is still there afterwards, and for a path that is not a file.
  virtual bool Remove(std::string_view path, Removal removal) = 0;

  // Replaces `to`. False if `from` can't be read or `to` can't be written.
  virtual bool Copy(std::string_view from, std::string_view to) = 0;
};

}  // namespace ondura
