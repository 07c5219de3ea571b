#include "engines/common/CompareList.h"

#include <algorithm>
#include <chrono>
#include <utility>

#include "engine/engine_files.h"
#include "text/text.h"
#include "text/utf16.h"
#include "util/date_text.h"

namespace ondura::engines {

namespace {

using namespace std::chrono_literals;

constexpr auto kPause = 500ms;
constexpr auto kPatience = 10min;
constexpr std::size_t kChunkBytes = std::size_t{1} << 20;
constexpr std::string_view kLineEndBytes{"\r\0\n\0", 4};

// Where the bytes of the last whole line end; a UTF-16 unit begins at an even place.
std::size_t EndOfLastLine(std::string_view bytes) {
  auto at = bytes.rfind(kLineEndBytes);
  while (at != std::string_view::npos && at % 2 != 0) {
    at = at == 0 ? std::string_view::npos : bytes.rfind(kLineEndBytes, at - 1);
  }
  return at == std::string_view::npos ? 0 : at + kLineEndBytes.size();
}

// A part of which only the size matters.
class PartSize {
 public:
  explicit PartSize(std::string path) : path_(std::move(path)) {}

  const std::string& path() const { return path_; }
  bool Follow(Files& files) { return size_ != std::exchange(size_, files.Size(path_).value_or(0)); }
  bool IsAsRead(Files& files) const { return files.Size(path_).value_or(0) == size_; }

 private:
  std::string path_;
  std::uint64_t size_ = 0;
};

// FNV-1a, carried on from chunk to chunk.
std::uint64_t Digest(std::uint64_t digest, std::string_view bytes) {
  for (const char byte : bytes) digest = (digest ^ static_cast<unsigned char>(byte)) * 0x100000001b3;
  return digest;
}

}  // namespace

std::optional<Candidate> ParseCompareLine(std::string_view line) {
  const auto fields = Split(line, "/");
  if (fields.size() != 5) return std::nullopt;
  const auto size = ParseInteger(fields[1]);
  const auto modified = ParseFixedDate(fields[2]);
  const auto later = ParseFixedDate(fields[3]);
  const auto earlier = ParseFixedDate(fields[4]);
  if (fields[0].empty() || !size || *size < 0 || !modified || !later || !earlier) return std::nullopt;
  return Candidate{fields[0], static_cast<std::uint64_t>(*size), *modified, *later, *earlier};
}

bool GrowingPart::Follow(Files& files) {
  const std::uint64_t size = files.Size(path_).value_or(0);
  if (size == end_) return false;
  if (size < end_) Forget();
  bool grew = false;
  while (TakeChunk(files)) grew = true;
  return grew;
}

bool GrowingPart::TakeChunk(Files& files) {
  const std::string bytes = files.ReadPart(path_, end_, kChunkBytes).value_or("");
  const std::string_view lines = std::string_view{bytes}.substr(0, EndOfLastLine(bytes));
  if (lines.empty()) return false;
  for (const std::string& line : LinesOf(FromUtf16(lines))) {
    if (auto candidate = ParseCompareLine(line)) candidates_.push_back(std::move(*candidate));
  }
  end_ += lines.size();
  digest_ = Digest(digest_, lines);
  return true;
}

bool GrowingPart::IsAsRead(Files& files) {
  std::uint64_t digest = 0;
  std::uint64_t at = 0;
  while (at < end_) {
    const auto limit = static_cast<std::size_t>(std::min<std::uint64_t>(kChunkBytes, end_ - at));
    const std::string bytes = files.ReadPart(path_, at, limit).value_or("");
    if (bytes.empty()) break;
    digest = Digest(digest, bytes);
    at += bytes.size();
  }
  if (at == end_ && digest == digest_) return true;
  Forget();
  return false;
}

void GrowingPart::Forget() {
  end_ = 0;
  digest_ = 0;
  candidates_.clear();
}

std::optional<CompareListPart> CompareList::NextPart(const std::function<bool()>& is_over) {
  GrowingPart part(PathOf(taken_ + 1));
  const auto progress = WaitFor(part, is_over);
  if (!progress) return std::nullopt;
  return CompareListPart{part.Take(), *progress == Progress::kLast};
}

std::optional<int> CompareList::WaitForEnd(const std::function<bool()>& is_over) {
  while (true) {
    PartSize part(PathOf(taken_ + 1));
    const auto progress = WaitFor(part, is_over);
    if (!progress) return std::nullopt;
    if (*progress == Progress::kLast) return taken_;
  }
}

bool CompareList::ForEach(int part_count, const std::function<void(const Candidate&)>& visit) {
  Files& files = client_.machine().files;
  for (int number = 1; number <= part_count; ++number) {
    GrowingPart part(PathOf(number));
    const std::uint64_t size = files.Size(part.path()).value_or(0);
    if (!files.Exists(part.path())) return false;
    while (part.end() < size && part.TakeChunk(files)) {
      for (const Candidate& candidate : part.Take()) visit(candidate);
    }
  }
  return true;
}

template <typename Part>
std::optional<CompareList::Progress> CompareList::WaitFor(Part& part, const std::function<bool()>& is_over) {
  const int number = taken_ + 1;
  const Machine& machine = client_.machine();
  Look last = ReadKeys();
  part.Follow(machine.files);
  LocalTime last_sign = machine.clock.Now();
  while (!is_over()) {
    machine.clock.Sleep(kPause);
    const Look look = ReadKeys();
    const bool grew = part.Follow(machine.files);
    const Progress progress = ProgressOf(number, look);
    if (look == last && !grew && progress != Progress::kGrowing) {
      // What is announced and not there was lost: without it the files of the list would pass for saved.
      if (!machine.files.Exists(part.path())) return std::nullopt;
      if (!part.IsAsRead(machine.files)) continue;
      ++taken_;
      return progress;
    }
    if (look != last || grew) last_sign = machine.clock.Now();
    if (machine.clock.Now() - last_sign > kPatience && !JobTracedWithin(kPatience)) return std::nullopt;
    last = look;
  }
  return std::nullopt;
}

CompareList::Look CompareList::ReadKeys() {
  return {client_.ReadStatus(profile_keys::kCompareListCount),
          client_.ReadStatus(profile_keys::kStatusCheckCount)};
}

// The job traces at least once a minute, also while it walks a folder that adds no line.
bool CompareList::JobTracedWithin(std::chrono::seconds limit) const {
  const Machine& machine = client_.machine();
  const auto traced = machine.files.Modified(client_.installation().UserFile(engine_files::kJobTrace));
  return traced && machine.clock.Now() - *traced <= limit;
}

CompareList::Progress CompareList::ProgressOf(int number, const Look& look) const {
  const int parts = ParseInt16(look.part_count).value_or(0);
  if (number > parts) return Progress::kGrowing;
  if (number < parts || look.list_count == "1") return Progress::kComplete;
  return client_.machine().files.Exists(PathOf(number + 1)) ? Progress::kComplete : Progress::kLast;
}

std::string CompareList::PathOf(int number) const {
  return client_.installation().UserFile(engine_files::CompareListPart(number));
}

}  // namespace ondura::engines
