#include "host/fiscal_export.h"

#include <cstdio>
#include <stdexcept>
#include <vector>

#include "adapters/files/private_files.h"
#include "fiscal/records.h"
#ifdef TPV_WITH_FISCAL
#include "adapters/fiscal/message.h"
#endif

namespace tpv {

namespace {

constexpr std::size_t kMost = 1000;  // records a message

std::string BodyOf([[maybe_unused]] const std::vector<fiscal::Record>& records) {
#ifdef TPV_WITH_FISCAL
  return fiscal::MessageBody(records, false);
#else
  throw std::runtime_error("Este programa se construyó sin las bibliotecas que escriben registros de facturación");
#endif
}

class MessageFiles {
 public:
  explicit MessageFiles(std::string folder) : folder_(std::move(folder)) { MakePrivateFolder(folder_); }

  void Add(const fiscal::Record& record) {
    const bool another = !records_.empty() && (records_.size() == kMost || records_[0].issuer != record.issuer ||
                                               records_[0].mode != record.mode);
    if (another) Write();
    records_.push_back(record);
    ++count_;
  }
  long Finish() {
    if (!records_.empty()) Write();
    return count_;
  }

 private:
  void Write() {
    char name[32];
    std::snprintf(name, sizeof name, "/registros-%04d.xml", ++files_);
    if (!CreatePrivateFile(folder_ + name, BodyOf(records_))) {
      throw FileError("Ya existe «" + folder_ + name + "»");
    }
    records_.clear();
  }

  const std::string folder_;
  std::vector<fiscal::Record> records_;
  int files_ = 0;
  long count_ = 0;
};

}  // namespace

long ExportRecords(Connection& connection, const std::string& folder, const std::optional<DateTime>& from,
                   const std::optional<DateTime>& to) {
  MessageFiles files(folder);
  fiscal::ForEachRecord(connection, from, to, [&](const fiscal::Record& record) { files.Add(record); });
  return files.Finish();
}

}  // namespace tpv
