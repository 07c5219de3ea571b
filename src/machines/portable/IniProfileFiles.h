#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "machines/portable/CodePageTable.h"
#include "machines/portable/IniText.h"
#include "platform/ProfileFiles.h"

namespace ondura {

// The rules of private profile files over a backend's way to load and store one.
class IniProfileFiles : public ProfileFiles {
 public:
  explicit IniProfileFiles(const CodePageTable& code_page) : code_page_(code_page) {}

  std::string ReadString(const IniKey& key) override;
  std::string ReadLongString(const IniKey& key) override;
  int ReadInt(const IniKey& key, int fallback) override;
  bool WriteString(const IniKey& key, std::string_view value) override;

 protected:
  // The file as it is now. Null when it is missing or can't be read.
  virtual std::shared_ptr<const IniText> Load(std::string_view path) = 0;

  // Replaces the file as a whole, or makes it. False leaves the old content.
  virtual bool Store(std::string_view path, const IniText& text) = 0;

  // False when a file is there that can't be read: writing would lose what it holds.
  virtual bool MayReplace(std::string_view path) = 0;

  [[nodiscard]] const CodePageTable& code_page() const { return code_page_; }

 private:
  std::string ReadCut(const IniKey& key, std::size_t limit_bytes);

  const CodePageTable& code_page_;
};

}  // namespace ondura
