#include "engines/restic/ResticDoor.h"

#include <iostream>
#include <nlohmann/json.hpp>
#include <string>
#include <utility>

#include "engines/common/program.h"
#include "engines/restic/snapshot_files.h"
#include "text/text.h"
#include "util/date_text.h"

namespace ondura::engines {

namespace {

using Json = nlohmann::json;
using namespace engine_results;

constexpr int kExitFailed = 1;

void Answer(std::ostream& answers, const Json& object) {
  // A name of the store may hold what is not UTF-8.
  answers << object.dump(-1, ' ', false, Json::error_handler_t::replace) << "\n" << std::flush;
}

Json FiguresOf(const Restore::Figures& figures) {
  return {{"files", figures.files}, {"folders", figures.folders}, {"bytes", figures.bytes}};
}

std::string KindOf(const ResticSnapshot& snapshot) {
  constexpr std::string_view kLead = "kind:";
  for (const std::string& tag : snapshot.tags) {
    if (tag.starts_with(kLead)) return tag.substr(kLead.size());
  }
  return "files";
}

// "D:\Documents" for `D:\Documents\x`. Empty for a drive.
std::string FolderOf(std::string_view path) {
  const auto end = path.rfind('\\');
  return end == std::string_view::npos || path.ends_with(":\\") ? "" : std::string{path.substr(0, end)};
}

}  // namespace

int ResticDoor::Run(const DoorCall& call) {
  using namespace door_verbs;
  if (call.verb == kOffers) return Offers();
  if (call.verb == kAccept) return Accept();
  if (call.verb == kStore) return ShowStore();
  if (call.verb == kSnapshots) return ShowSnapshots();
  if (call.verb == kFiles) return ShowFiles(call);
  if (call.verb == kRestore) return RestoreFiles(call);
  if (call.verb == kVerify) return Verify(call);
  if (call.verb == kPassword) return ChangePassword();
  Fail("this engine does not know '" + call.verb + "'");
  return kExitUnusable;
}

int ResticDoor::Fail(std::string_view message) {
  Answer(answers_, {{"type", "error"}, {"message", message}});
  return kExitFailed;
}

int ResticDoor::Offers() {
  using namespace door_verbs;
  Answer(answers_, {{"type", "offers"},
                    {"engine", "restic"},
                    {"offers", {kSnapshots, kFiles, kRestore, kVerify, kStore, kAccept, kPassword}}});
  return kExitDone;
}

bool ResticDoor::Enter() {
  const EngineResult result = store_.Enter(client_.ReadAccount());
  if (result == kDone) return true;
  const std::string reason = store_.Reason();
  Fail("the store can't be entered (" + result.Text() + ")" + (reason.empty() ? "" : ": " + reason));
  return false;
}

int ResticDoor::ShowStore() {
  const StoreSettings& settings = store_.settings();
  Json answer{{"type", "store"},
              {"location",
               settings.store_folder.empty() ? WithoutLogins(settings.repository) : settings.store_folder},
              {"max_bytes", settings.max_bytes}};
  if (const auto checked = store_.record().LastCheck()) {
    answer["last_check"] = FormatDate(kStampPicture, *checked);
    answer["last_check_outcome"] = store_.record().LastOutcome();
  }
  Answer(answers_, answer);
  if (!Enter()) return kExitFailed;
  const auto space = store_.Usage();
  if (!space) return Fail(store_.Reason());
  Answer(answers_, {{"type", "usage"}, {"used_bytes", space->used_bytes}, {"id", store_.record().Id()}});
  return kExitDone;
}

int ResticDoor::ShowSnapshots() {
  if (!Enter()) return kExitFailed;
  const auto snapshots = store_.Snapshots();
  if (!snapshots) return Fail(store_.Reason());
  for (const ResticSnapshot& snapshot : *snapshots) {
    Json paths = Json::array();
    for (const std::string& path : snapshot.paths) paths.push_back(store_.view().MachinePath(path));
    Answer(answers_, {{"type", "snapshot"},
                      {"id", snapshot.id.substr(0, 8)},
                      {"time", snapshot.time.substr(0, 19)},
                      {"host", snapshot.host},
                      {"kind", KindOf(snapshot)},
                      {"paths", std::move(paths)}});
  }
  return kExitDone;
}

// Null after an answer with the reason.
const ResticSnapshot* ResticDoor::Pick(const DoorCall& call) {
  auto snapshots = store_.Snapshots();
  if (!snapshots) {
    Fail(store_.Reason());
    return nullptr;
  }
  snapshots_ = *std::move(snapshots);
  const std::string when = call.Option("at");
  const ResticSnapshot* const picked = PickSnapshot(snapshots_, when);
  if (picked == nullptr) {
    Fail(snapshots_.empty()
             ? "there is no snapshot of this user on this machine yet"
             : "there is no snapshot at or before '" + when +
                   "'; give a time such as '2026-11-23 22:05' or an id from the list of snapshots");
  }
  return picked;
}

int ResticDoor::ShowFiles(const DoorCall& call) {
  if (!Enter()) return kExitFailed;
  const ResticSnapshot* const snapshot = Pick(call);
  if (snapshot == nullptr) return kExitFailed;
  const std::string folder = call.words.empty() ? "" : ToLower(call.words.front());
  const std::string wanted =
      folder.size() > 3 && folder.ends_with('\\') ? std::string{WithoutLast(folder)} : folder;
  const bool is_deep = call.Has("recursive");
  bool is_found = wanted.empty();
  const bool done = ForEachNode(store_, snapshot->id, [&](const ResticNode& node) {
    const std::string path = store_.view().MachinePath(node.path);
    const std::string lower = ToLower(path);
    const bool is_it = lower == wanted;
    is_found = is_found || is_it;
    const bool lies_in = wanted.empty() || lower.starts_with(WithBackslash(wanted));
    const bool is_direct =
        wanted.empty() ? path.ends_with(":\\") : WithBackslash(FolderOf(lower)) == WithBackslash(wanted);
    if (!(is_it && node.type != "dir") && !(lies_in && !is_it && (is_deep || is_direct))) return;
    Answer(answers_, {{"type", "file"},
                      {"path", path},
                      {"kind", node.type == "dir"       ? "folder"
                               : node.type == "symlink" ? "link"
                                                        : "file"},
                      {"bytes", node.size_bytes},
                      {"modified", node.modified.substr(0, 19)}});
  });
  if (!done) return Fail(store_.Reason());
  if (!is_found)
    return Fail(call.words.front() + " is not in the snapshot of " + snapshot->time.substr(0, 19));
  return kExitDone;
}

int ResticDoor::RestoreFiles(const DoorCall& call) {
  const std::string to = call.Option("to");
  if (to.empty() || call.words.empty()) return Fail("say what to restore, and where to with --to");
  if (!Enter()) return kExitFailed;
  const ResticSnapshot* const snapshot = Pick(call);
  if (snapshot == nullptr) return kExitFailed;
  Restore restore(
      store_, to, call.Has("force"), [&](const Restore::Figures& done, const Restore::Figures& total) {
        Answer(answers_, {{"type", "progress"}, {"done", FiguresOf(done)}, {"total", FiguresOf(total)}});
      });
  const bool done = restore.Run(*snapshot, call.words);
  if (!done) Fail(restore.error());
  Json answer = FiguresOf(restore.restored());
  answer["type"] = "restored";
  answer["snapshot"] = snapshot->id.substr(0, 8);
  answer["time"] = snapshot->time.substr(0, 19);
  if (done || restore.restored().files > 0) Answer(answers_, answer);
  return done ? kExitDone : kExitFailed;
}

int ResticDoor::Verify(const DoorCall& call) {
  if (!Enter()) return kExitFailed;
  const std::string subset = call.Option("subset");
  const std::string option = subset.empty() ? "--read-data" : "--read-data-subset=" + subset;
  store_.program().Do({.arguments = {"unlock"}});  // of programs that are no more
  const ResticEnd end = store_.program().Do({.arguments = {"check", option}});
  if (!store_.Check(end)) return Fail("the store is not sound:\n" + store_.Reason());
  Answer(answers_, {{"type", "verified"}, {"subset", subset.empty() ? "100%" : subset}});
  return kExitDone;
}

int ResticDoor::Accept() {
  store_.record().RememberId("");
  store_.record().ForgetUsed();
  if (!Enter()) return kExitFailed;
  Answer(answers_, {{"type", "accepted"}, {"id", store_.record().Id()}});
  return kExitDone;
}

// The old password comes on standard input; the profile has the new one.
int ResticDoor::ChangePassword() {
  std::string old;
  std::getline(std::cin, old);
  if (!store_.ChangePassword(client_.ReadAccount(), old)) return Fail(store_.Reason());
  Answer(answers_, {{"type", "changed"}});
  return kExitDone;
}

}  // namespace ondura::engines
