#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "engines/common/Store.h"
#include "engines/common/SystemView.h"
#include "engines/restic/RepositoryRecord.h"
#include "engines/restic/ResticProgram.h"
#include "engines/restic/StoreSettings.h"
#include "engines/restic/restic_messages.h"

namespace ondura::engines {

// A user's backups in a repository of restic: one repository a user, in any store that restic knows.
class ResticStore : public Store {
 public:
  explicit ResticStore(Client& client);

  // Makes the repository at the first contact of all. Afterwards only the same one will do: where it is
  // missing, an unmounted disk is more likely than a new beginning.
  EngineResult Enter(const Account& account) override;
  EngineResult Resume(const Account& account) override;
  [[nodiscard]] EngineResult Failure() const override { return failure_; }
  [[nodiscard]] std::string Reason() const override { return reason_; }
  std::optional<StoreSpace> Usage() override;
  [[nodiscard]] bool LacksRoom() override { return record_.IsFull(); }
  EngineResult ServerList() override;
  EngineResult Newest() override;
  EngineResult Transfer(const TransferRequest& request, TransferJournal& journal,
                        StopRequests& stop) override;
  [[nodiscard]] std::vector<std::string> OwnFolders() const override;

  // For the other doors of the engine. Valid after Enter.
  [[nodiscard]] ResticProgram& program() { return *program_; }
  [[nodiscard]] SystemView& view() { return *view_; }
  [[nodiscard]] const StoreSettings& settings() const { return settings_; }
  [[nodiscard]] RepositoryRecord& record() { return record_; }

  // The snapshots of this machine's user, oldest first. std::nullopt if the store does not answer.
  std::optional<std::vector<ResticSnapshot>> Snapshots();

  // True for a run that was done; else Reason() says what restic had to say.
  bool Check(const ResticEnd& end);

  // Gives the repository the password that `account` has by now, in the place of `old`.
  bool ChangePassword(const Account& account, const std::string& old);

  // Arguments that pick this user's snapshots, and that new ones are marked with.
  [[nodiscard]] std::vector<std::string> OwnMarks() const;

 private:
  // All that entering needs before the store is asked.
  EngineResult Prepare(const Account& account);
  EngineResult Meet();
  EngineResult MakeRepository();
  EngineResult TakeId(std::string_view id);
  EngineResult Fail(const ResticEnd& end, EngineResult result);
  [[nodiscard]] EngineResult ResultOf(const ResticEnd& end) const;
  // The snapshot that the local database names to compare with: empty if there is none so far, std::nullopt
  // without a database.
  [[nodiscard]] std::optional<std::string> NotedParent() const;
  bool WriteParent(std::string_view id);

  Client& client_;
  std::string work_folder_;
  RepositoryRecord record_;
  StoreSettings settings_;
  std::unique_ptr<SystemView> view_;
  std::unique_ptr<ResticProgram> program_;
  std::string reason_;
  EngineResult failure_ = engine_results::kCannotConnect;
  bool resumes_ = false;
};

}  // namespace ondura::engines
