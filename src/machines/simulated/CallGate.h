#pragma once

#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

#include "machines/simulated/CallJournal.h"

namespace ondura {

// A path as an argument of a call: doubled backslashes are written once, so that a test need not know how
// the path was put together.
struct PathArgument {
  std::string_view path;
};

// Leads each call of the component past the journal. `argument` is a text, a PathArgument or a function
// that makes the text, called only where it is wanted.
class CallGate {
 public:
  explicit CallGate(CallJournal& journal) : journal_(journal) {}

  // A call that can fail: `nothing` is its answer then.
  template <class Argument, class Result, class Effect>
  Result Call(CallKind kind, std::string_view method, const Argument& argument, Result nothing,
              Effect effect) {
    const std::string text = TextOf(method, argument);
    Result result = std::move(nothing);
    if (journal_.Begin(text, kind) == Verdict::kGoOn) result = effect();
    journal_.End(text, kind);
    return result;
  }

  // A call that puts `bytes` into a file and may be torn in the middle of them.
  template <class Effect>
  bool Write(std::string_view method, std::string_view path, std::string_view bytes, Effect effect) {
    const std::string text = TextOf(method, PathArgument{path});
    const Verdict verdict = journal_.Begin(text, CallKind::kChange);
    bool is_written = false;
    if (verdict == Verdict::kGoOn) is_written = effect(bytes);
    if (verdict == Verdict::kTear) effect(bytes.substr(0, bytes.size() / 2));
    journal_.End(text, CallKind::kChange);
    return is_written;
  }

  // A call that can't fail.
  template <class Argument, class Effect>
  std::invoke_result_t<Effect> Note(CallKind kind, std::string_view method, const Argument& argument,
                                    Effect effect) {
    const std::string text = TextOf(method, argument);
    const Verdict verdict = journal_.Note(text, kind);
    if constexpr (std::is_void_v<std::invoke_result_t<Effect>>) {
      if (verdict == Verdict::kGoOn) effect();
      journal_.End(text, kind);
    } else {
      return effect();
    }
  }

 private:
  template <class Argument>
  std::string TextOf(std::string_view method, const Argument& argument) const {
    std::string text(method);
    if (!journal_.WantsText(method)) return text;
    if constexpr (std::is_same_v<Argument, PathArgument>) {
      AppendPath(text, argument.path);
    } else if constexpr (std::is_invocable_v<const Argument&>) {
      AppendText(text, argument());
    } else {
      AppendText(text, argument);
    }
    return text;
  }

  static void AppendText(std::string& text, std::string_view argument) {
    if (!argument.empty()) text.append(" ").append(argument);
  }

  static void AppendPath(std::string& text, std::string_view path) {
    text += ' ';
    const std::size_t start = text.size();
    for (const char letter : path) {
      const bool is_doubled = letter == '\\' && text.ends_with('\\') && text.size() > start + 1;
      if (!is_doubled) text += letter;
    }
  }

  CallJournal& journal_;
};

}  // namespace ondura
