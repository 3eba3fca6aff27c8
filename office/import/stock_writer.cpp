#include "office/import/stock_writer.h"

#include "base/number_text.h"
#include "data/sql_text.h"
#include "office/fields.h"
#include "platform/database.h"

namespace tpv::office {

void StockWriter::Set(std::int64_t article, std::int64_t warehouse, double units, bool known) {
  if (known) {
    connection_.Execute("UPDATE Exis SET exis_uni = " + sql::Number(units) +
                        " WHERE exis_idart = " + sql::Number(article) +
                        " AND exis_idalma = " + sql::Number(warehouse));
  } else {
    added_.Add(sql::Number(article) + ", " + sql::Number(warehouse) + ", " +
               Literal(ToPlain(units), FieldKind::Number));
  }
}

void StockWriter::Flush() {
  if (!added_.empty()) connection_.Execute(added_.text());
}

}  // namespace tpv::office
