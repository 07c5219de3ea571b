#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace ondura::engines {

// Folders of the system as a restore needs them, however long their paths are. Paths are full ones in the
// system's form, in UTF-8 where it has no bytes of its own. The build picks the system's file.

enum class EntryKind { kNothing, kFile, kFolder };

std::string PathIn(std::string_view folder, std::string_view name);

// A link is what it leads to, or else a file.
EntryKind WhatIs(const std::string& path);

// What is in a folder; a link is a file here. False if not all could be listed.
using TakeEntry = std::function<void(const std::string& name, EntryKind kind, std::uint64_t bytes)>;
bool ListFolder(const std::string& folder, const TakeEntry& take);

// With the folders above it. True too if it is there.
bool MakeFolders(const std::string& path);

// A file takes the place of a file.
bool MoveEntry(const std::string& from, const std::string& to);

bool RemoveTree(const std::string& path);

// When a folder was changed last, in the system's own count.
std::optional<std::int64_t> FolderTime(const std::string& path);
void SetFolderTime(const std::string& path, std::int64_t time);

}  // namespace ondura::engines
