#pragma once

#include "stages/StageHouse.h"

namespace ondura {

// A house with one user whose Exchange job is due, and with stand-ins for the Exchange tools.
class ExchangeHouse : public StageHouse {
 public:
  static constexpr std::string_view kStoreTool = "C:\\ProgramData\\Ondura\\TolmeraProfExchBkp.exe";
  static constexpr std::string_view kStoreTool64 = "C:\\ProgramData\\Ondura\\TolmeraProf64ExchBkp.exe";
  static constexpr std::string_view kBrickTool = "C:\\ProgramData\\Ondura\\OxExchBrick.exe";

  ExchangeHouse(const std::string& recordno, const std::string& set_line) : StageHouse(Mailing(recordno)) {
    PutText("atbkupfolderlist.txt", "");
    PutBackupSet(set_line);
  }
};

}  // namespace ondura
