#include "engines/restic/ResticProgram.h"

#include <algorithm>
#include <utility>

#include "text/text.h"
#include "util/folder_size.h"

namespace ondura::engines {

namespace {

using namespace std::chrono_literals;

constexpr auto kLook = 100ms;
constexpr auto kTimeToLeave = 5s;
constexpr std::size_t kMostWords = 8192;

// What restic prints before it reads the password, also where everything else is JSON.
constexpr std::string_view kPasswordLine = "reading repository password from stdin";

// A text as part of an address (RFC 3986).
std::string UrlEscaped(std::string_view text) {
  constexpr std::string_view kDigits = "0123456789ABCDEF";
  constexpr std::string_view kPlain = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-._~";
  std::string escaped;
  for (const char character : text) {
    if (kPlain.find(character) != std::string_view::npos) {
      escaped += character;
    } else {
      const auto byte = static_cast<unsigned char>(character);
      escaped.append({'%', kDigits[byte >> 4], kDigits[byte & 15]});
    }
  }
  return escaped;
}

}  // namespace

ResticProgram::ResticProgram(Client& client, const StoreSettings& settings, Account account, SystemView& view,
                             const std::string& work_folder)
    : client_(client), settings_(settings), account_(std::move(account)), view_(view) {
  password_ = account_.encryption_password.empty() ? account_.password : account_.encryption_password;
  const Machine& machine = client_.machine();
  cache_ = work_folder + "\\Cache";
  ssh_log_ = work_folder + "\\Temp\\ssh.log";
  for (auto [name, folder] : {std::pair{"\\Cache", &cache_folder_}, std::pair{"\\Temp", &temp_folder_}}) {
    machine.folders.Make(work_folder + name);
    *folder = machine.processes.SystemPath(work_folder + name);
  }
}

ResticEnd ResticProgram::Do(const Run& run) {
  ResticEnd end;
  client_.machine().files.Remove(ssh_log_, Removal::kForce);
  const auto program = client_.machine().processes.Start(RequestOf(run));
  if (!program) return end;
  end.how = ResticEnd::How::kEnded;
  std::chrono::milliseconds spent{0};
  std::chrono::milliseconds leaving{0};
  while (true) {
    const auto line = program->NextLine(kLook);
    if (line && line->text == kPasswordLine) continue;
    if (line) {
      if (run.take_line) run.take_line(*line);
      if (!run.take_line && line->stream == PipeStream::kOutput) end.output.append(line->text).append("\n");
      if (line->stream == PipeStream::kError && !line->text.starts_with('{') &&
          end.words.size() < kMostWords) {
        end.words.append(line->text).append("\n");
      }
    } else if (const auto code = program->ExitCode()) {
      end.exit_code = *code;
      end.words += client_.machine().files.ReadHead(ssh_log_, kMostWords).value_or("");
      end.words = WithoutLogins(std::move(end.words));  // it may name an address
      return end;
    } else {
      spent += kLook;
      if (end.how != ResticEnd::How::kEnded) leaving += kLook;
      if (leaving >= kTimeToLeave) program->Kill();
    }
    if (end.how != ResticEnd::How::kEnded) continue;
    if (run.is_over && run.is_over()) end.how = ResticEnd::How::kStopped;
    if (run.limit > 0s && spent >= run.limit) end.how = ResticEnd::How::kTimedOut;
    if (end.how != ResticEnd::How::kEnded) program->Interrupt();
  }
}

PipedRequest ResticProgram::RequestOf(const Run& run) const {
  PipedRequest request;
  request.file = "restic";
  request.folder = view_.folder();
  request.arguments = run.arguments;
  if (!settings_.authority.empty()) {
    request.arguments.insert(request.arguments.end(),
                             {"--cacert", client_.machine().processes.SystemPath(settings_.authority)});
  }
  if (StoreKind(settings_.repository) == "sftp") {
    request.arguments.insert(
        request.arguments.end(),
        {"-o", "sftp.command=" + SshCommand(settings_.repository, settings_.ssh_config,
                                            client_.machine().processes.SystemPath(ssh_log_))});
  }
  for (const auto& [option, rate] : {std::pair{"--limit-upload", settings_.upload_kib},
                                     std::pair{"--limit-download", settings_.download_kib}}) {
    if (rate > 0) request.arguments.insert(request.arguments.end(), {option, std::to_string(rate)});
  }
  request.environment = view_.Environment();
  request.environment.push_back("RESTIC_PROGRESS_FPS=1");
  // Without a limit it takes 210 MB for 200,000 files, where 120 do as well and as fast.
  request.environment.push_back("GOMEMLIMIT=" + std::to_string(MemoryLimit()));
  request.environment.push_back("RESTIC_CACHE_DIR=" + cache_folder_);
  for (const char* const name : {"TMPDIR=", "TMP=", "TEMP="})
    request.environment.push_back(name + temp_folder_);
  AddProxy(request.environment);
  request.input = password_ + "\n";
  request.secrets = run.secrets;
  request.secrets.push_back({"RESTIC_REPOSITORY_FILE", RepositoryWithLogin()});
  AddStoreSecrets(request);
  return request;
}

// The index of the store has to fit in, or the program would do nothing but collect. In memory it is several
// times as large as in the cache.
std::uint64_t ResticProgram::MemoryLimit() const {
  constexpr std::uint64_t kLeast = std::uint64_t{112} * 1024 * 1024;
  constexpr std::uint64_t kBase = std::uint64_t{40} * 1024 * 1024;
  constexpr std::uint64_t kIndexGrowth = 8;
  Folders& folders = client_.machine().folders;
  std::uint64_t index_bytes = 0;
  folders.List(cache_, [&](const FolderEntry& entry) {
    if (entry.is_folder)
      index_bytes += SizeOfFolder(folders, cache_ + "\\" + std::string{entry.name} + "\\index\\");
    return Visit::kContinue;
  });
  return std::max(kLeast, kBase + kIndexGrowth * index_bytes);
}

void ResticProgram::AddStoreSecrets(PipedRequest& request) const {
  const std::string_view kind = StoreKind(settings_.repository);
  if (kind == "s3") {
    request.secrets.push_back(
        {"AWS_SHARED_CREDENTIALS_FILE", "[default]\naws_access_key_id = " + account_.name +
                                            "\naws_secret_access_key = " + account_.password + "\n"});
  } else if (kind == "b2") {
    request.environment.push_back("B2_ACCOUNT_ID=" + account_.name);
    request.environment.push_back("B2_ACCOUNT_KEY=" + account_.password);
  } else if (kind == "azure") {
    request.environment.push_back("AZURE_ACCOUNT_NAME=" + account_.name);
    request.environment.push_back("AZURE_ACCOUNT_KEY=" + account_.password);
  }
}

// A server asks for the account's name and password, unless the address has a login of its own.
std::string ResticProgram::RepositoryWithLogin() const {
  const std::string& repository = settings_.repository;
  const auto host = repository.find("://");
  if (StoreKind(repository) != "rest" || host == std::string::npos ||
      repository.substr(host + 3, repository.find('/', host + 3) - host - 3).find('@') != std::string::npos) {
    return repository;
  }
  return repository.substr(0, host + 3) + UrlEscaped(account_.name) + ":" + UrlEscaped(account_.password) +
         "@" + repository.substr(host + 3);
}

void ResticProgram::AddProxy(std::vector<std::string>& environment) const {
  const auto read = [&](const ProfileKey& key) { return client_.transfer().Trf_ReadProxyProfile(key); };
  const std::string address = read(profile_keys::kProxyName);
  if (read(profile_keys::kProxySet) != "1" || address.empty()) return;
  std::string login;
  if (ReadsAsTrue(read(profile_keys::kProxyAuthOn))) {
    login = UrlEscaped(read(profile_keys::kProxyUser)) + ":" +
            UrlEscaped(read(profile_keys::kProxyPassword)) + "@";
  }
  const std::string scheme = ReadsAsTrue(read(profile_keys::kProxySocks)) ? "socks5://" : "http://";
  const std::string proxy = scheme + login + address + ":" + read(profile_keys::kProxyPort);
  for (const char* const name : {"HTTP_PROXY=", "HTTPS_PROXY="}) environment.push_back(name + proxy);
}

std::string WithoutLogins(std::string text) {
  constexpr std::string_view kLead = "://";
  for (auto at = text.find(kLead); at != std::string::npos; at = text.find(kLead, at + 1)) {
    const auto begin = at + kLead.size();
    const auto end = text.find_first_of("@/ \n", begin);
    if (end != std::string::npos && text[end] == '@') text.replace(begin, end - begin, "***");
  }
  return text;
}

std::string SshCommand(const std::string& repository, const std::string& config_file,
                       const std::string& log_file) {
  std::string command = "ssh -o BatchMode=yes";
  if (!log_file.empty()) command += " -E '" + log_file + "'";
  if (!config_file.empty()) command += " -F '" + config_file + "'";
  std::string place = repository.substr(repository.find(':') + 1);
  if (place.starts_with("//")) {  // sftp://user@host:port/folder
    place = place.substr(2, place.find('/', 2) - 2);
    if (const auto port = place.rfind(':');
        port != std::string::npos && place.find(']', port) == std::string::npos) {
      command += " -p " + place.substr(port + 1);
      place.erase(port);
    }
  } else {  // sftp:user@host:folder
    place.erase(std::min(place.find(':'), place.size()));
  }
  return command + " " + place + " -s sftp";
}

}  // namespace ondura::engines
