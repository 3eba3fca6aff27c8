// Storing and deleting sales through the suite's delivery-note component.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "screen/lookups.h"

#include "platform/database.h"

namespace tpv {

struct Context;
class Object;

// Creates the header of a new ticket, marks it as one of the till and registers it
// as a sale in progress. Its id becomes the context's IdAlbaran. `till` and `date`
// are field texts; an empty date takes the store's clock, or the second behind the
// till's newest entry where that clock was set back. Throws TillRefusal when the till
// is closed.
void CreateSaleHeader(Context& context, const CustomerRecord& customer, const std::string& till,
                      const std::string& date);

// A line as it is stored. Euros, percent.
struct SaleLine {
  std::int32_t id = 0;  // 0: a new line
  std::int32_t article_id = 0;
  std::string article_code;
  std::int32_t tax_id = 0;
  std::string description;
  double units = 0;
  double net_price = 0;
  std::int32_t warehouse = 0;  // whose stock it takes; 0: nobody's
  std::string discount;  // the field's text; empty for none

  // Without tax, after the discount, in cents.
  double Amount() const;
};

// Net price of a price with tax, both in euros, rounded as the store's prices.
double NetPrice(double price_with_tax, double tax_rate, int decimals);

// Stores a new line of the context's sale, or replaces the line with this id.
// Both throw SaleTaken.
void StoreLine(Context& context, const SaleLine& line);
void DeleteLine(Context& context, std::int32_t line_id);

// The ids of a sale's lines, as stored.
std::vector<std::int32_t> LinesOf(Context& context, std::int32_t sale_id);
// Deletes lines and gives their stock back, also of lines that are gone already.
// Inside the caller's transaction.
void DeleteLines(Context& context, const std::vector<std::int32_t>& lines);

// Deletes a sale, its lines first, and its row in the register. Inside the caller's
// transaction.
void DeleteSale(Context& context, std::int32_t sale_id);

// Deletes a stored sale, its lines first, all or nothing. Throws SaleTaken for one
// that has payments.
void CancelSale(Context& context, std::int32_t sale_id);

// Another till deleted the sale in progress, took it up, collected it with the
// customer's pending tickets or invoiced it. what() is for the operator.
class SaleTaken : public DatabaseError {
 public:
  using DatabaseError::DatabaseError;
};

inline constexpr const char* kSaleInvoiced = "La venta ya está incluida en una factura";
inline constexpr const char* kSaleElsewhere =
    "La venta ya no está en este puesto: otro la ha recuperado o la ha aparcado";

// Throws SaleTaken when that happened. Inside the caller's transaction.
void RequireOwnSale(Context& context);
// The context's sale stays as a pending ticket and is no longer in progress, unless
// another till took it up. `originals` are the tickets that it takes lines back from.
// Throws fiscal::RecordRefused.
void LeaveSalePending(Context& context, const std::vector<std::int32_t>& originals = {});
// Cancels the context's sale in progress; throws SaleTaken for one that another
// till collected or invoiced. One that is gone already is no error.
void GiveUpSale(Context& context);

}  // namespace tpv
