// What the sale screen and the returns screen do alike: the head (till, seller,
// customer, date) and the line being entered (article, units, price, discount).
#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "data/decimals.h"
#include "sale/article_lookup.h"
#include "sale/weighed_code.h"
#include "screen/declared_fields.h"
#include "screen/lookups.h"
#include "screen/screen.h"

namespace tpv {

struct SaleLine;

// What the shop's parameters say of a line.
struct LineTerms {
  int price_decimals = 2;
  int unit_decimals = 2;
  std::int32_t warehouse = 0;  // whose stock the sale takes; 0: nobody's
};

class SaleEntry : public Screen {
 public:
  // Looks a customer up by code or id, or with -1 and 0 through the search
  // dialog; `id` receives the choice.
  void msBuscarClientes(std::int32_t& code, std::int32_t& id);

  ui::TextBoxes Text1{*this, "Text1"};

  void OnLoad() override;
  void OnEnter(ui::Control& control) override;
  std::vector<ui::StatusItem> Status() const override;
  bool TakesScans() const override { return true; }
  // The article field of a sale in progress, started when there was none.
  ui::TextBox* FieldForScan() override;

 protected:
  SaleEntry(Context& ctx, std::string form_name);

  // The fields of head, line and totals, and those of the screen itself.
  void DeclareCommonFields(std::span<const DeclaredField> own);
  void OnF1(std::string_view tag) override;

  // The screen's own lists and totals of the context's sale.
  virtual void ShowLinesAndTotals() = 0;
  // cmdNueva: starts a sale, or gives up the one in progress.
  virtual void StartOrCancel() = 0;
  // An article is in the line fields and waits to be accepted.
  virtual void AwaitAcceptance() {}
  // Whether a line below zero is what the screen is for.
  virtual bool TakesGoodsBack() const { return false; }
  // Stores the line in the fields, or empties them.
  virtual void Accept() { AcceptLine(); }
  virtual void Drop();
  // Asks what becomes of an article that waits; false when it still does.
  bool SettleWaitingLine();
  virtual std::optional<Article> Find(const ArticleKey& key, std::int32_t customer_id);
  virtual std::optional<Tax> TaxOf(const Article& article);

  // head
  bool Warn(const std::string& text, ui::Control* focus_back);
  // Checks in the order of the screens; `when_closed` gets the focus when the
  // till is not open.
  bool CanStart(bool till_named, ui::Control* when_closed);
  // Asks the store whether the till is open, and shows what it says.
  virtual bool AskTill();
  // The date field's text; "" with the system's date, whatever was left in the field.
  std::string SaleDate() const { return Check1.checked ? std::string() : Text1[4].text; }
  // Creates the header of a new sale from the head's fields. False, and told, when the
  // till was closed meanwhile.
  bool CreateHeader();
  // Asks, takes the sale in progress out of the store and forgets it. False when
  // the operator keeps it.
  bool CancelSaleInProgress();
  // Its customer too: ShowCounterCustomer follows.
  void ForgetSale();
  void ShowCounterCustomer();
  // This one, or the counter's when there is none with this id.
  void ShowCustomer(std::int32_t id);
  // Customer, seller and date of the context's sale, which was taken up.
  void ShowHeadOfSale();
  // With 0 through the search dialog.
  void ShowAgent(std::int32_t id);
  // cmdNueva starts a sale, or gives up the one in progress.
  void OfferNewSale();
  void OfferToCancel();

  // line
  void LookUpArticle(ArticleKey key);
  bool AcceptLine();
  void EmptyLine();
  bool Quick() const;
  int PriceDecimals() const { return terms_ ? terms_->price_decimals : tpv::PriceDecimals(context()); }
  int UnitDecimals() const { return terms_ ? terms_->unit_decimals : tpv::UnitDecimals(context()); }
  std::int32_t Warehouse() const { return terms_ ? terms_->warehouse : Parameter("Par_Alma").IntOr(0); }

  ui::CheckBox Check1{*this, "Check1", "Fecha sistema", true};
  ui::ComboBox cboFpago{*this, "cboFpago", "Forma de pago"};
  ui::Button cmdNueva{*this, "cmdNueva", "&Nueva Venta"};

  std::optional<CustomerRecord> customer_;
  bool sale_in_progress_ = false;
  bool till_open_ = false;  // as the store said last, to be shown
  std::int32_t edited_line_ = 0;
  std::int32_t article_id_ = 0;
  std::string looked_up_code_;  // of the article in the line fields
  Tax tax_;
  int price_decimals_ = 2;  // of its price without tax, as when it was looked up
  std::optional<LineTerms> terms_;  // while a scanned line is stored and shown: as when it was looked up

 private:
  Offered OfferedCustomers() const;
  void ForgetCustomer();
  void LeaveAgent();
  void LeaveCustomer();
  void LeaveArticle();
  void TakeArticle(const Article& article);
  std::optional<WeighedCode> Weighed(const std::string& code) const;
  void TakeWeighed(const WeighedCode& weighed);
  void RefuseArticle(const std::string& text);
  bool CheckDate();
  void ReformatNumber(int index, int decimals);
  bool CheckLine();
  bool ConfirmGivingAway(const SaleLine& line);
  bool StoreEnteredLine();
};

}  // namespace tpv
