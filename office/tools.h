// What the office's windows need of the machine beside the ports of a till.
#pragma once

namespace tpv {
class LabelPress;
class TableFiles;
}

namespace tpv::office {

struct Tools {
  TableFiles* tables = nullptr;  // of spreadsheets; "~/" is understood
  LabelPress* labels = nullptr;  // null where there is none
};

}  // namespace tpv::office
