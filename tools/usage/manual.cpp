#include "manual.h"

#include "command_line_walk.h"
#include "text/text.h"

namespace ondura {

namespace {

// Backslashes and a dot or an apostrophe at a line's start mean something to roff; a dash is a dash to type.
std::string Escaped(const std::string& text) {
  std::string escaped = ReplaceAll(ReplaceAll(text, "\\", "\\e"), "-", "\\-");
  if (escaped.starts_with('.') || escaped.starts_with('\'')) escaped.insert(0, "\\&");
  return ReplaceAll(ReplaceAll(escaped, "\n.", "\n\\&."), "\n'", "\n\\&'");
}

std::string Named(const CLI::Option& option) {
  const std::string name = option.get_positional() ? option.get_name(true) : option.get_name(false, true);
  const std::string type = option.get_type_name();
  return name + (option.get_positional() || !TakesValue(option) || type.empty() ? "" : " " + type);
}

std::string Synopsis(const CLI::App& command) {
  std::string line = FullNameOf(command);
  for (const CLI::Option* one : PositionalsOf(command)) {
    line += one->get_required() ? " " + one->get_name(true) : " [" + one->get_name(true) + "]";
  }
  return line + " [OPTION...]";
}

void AddOptions(const CLI::App& command, std::string& page) {
  auto options = PositionalsOf(command);
  for (const CLI::Option* one : OptionsOf(command)) options.push_back(one);
  for (const CLI::Option* one : options) {
    page += ".TP\n\\fB" + Escaped(Named(*one)) + "\\fR\n" + Escaped(one->get_description());
    if (!one->get_default_str().empty()) page += " (default: " + Escaped(one->get_default_str()) + ")";
    page += "\n";
  }
}

void AddCommand(const CLI::App& command, std::string& page) {
  const auto below = CommandsOf(command);
  if (below.empty()) {
    page += ".SS " + Escaped(Synopsis(command)) + "\n" + Escaped(command.get_description()) + "\n";
    AddOptions(command, page);
    page += ".PP\n.nf\n" + Escaped(command.get_footer()) + "\n.fi\n";
  }
  for (const CLI::App* one : below) AddCommand(*one, page);
}

}  // namespace

std::string ManualPage(const CLI::App& app, const std::string& version) {
  const std::string& name = app.get_name();
  std::string page = ".TH " + ToUpper(name) + " 1 \"\" \"" + name + " " + version + "\" \"User Commands\"\n";
  page += ".SH NAME\n" + Escaped(name) + " \\- " + Escaped(app.get_description()) + "\n";
  page += ".SH SYNOPSIS\n\\fB" + Escaped(name) + "\\fR [OPTION...] COMMAND\n.SH OPTIONS\n";
  AddOptions(app, page);
  page += ".SH COMMANDS\n";
  for (const CLI::App* one : CommandsOf(app)) AddCommand(*one, page);
  return page + ".SH EXAMPLE AND EXIT CODES\n.nf\n" + Escaped(app.get_footer()) + "\n.fi\n";
}

}  // namespace ondura
