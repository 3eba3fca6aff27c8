// A payment whose commit got no answer: the cashier tries again, and the shop has
// it once.
#include <gtest/gtest.h>

#include "tests/test_till.h"

namespace tpv {
namespace {

// The first commit of a payment gets no answer.
class Unanswered : public Connection {
 public:
  Unanswered(std::unique_ptr<Connection> inner, bool stored)
      : inner_(std::move(inner)), stored_(stored) {}

  std::unique_ptr<Recordset> Execute(std::string_view sql) override {
    pays_ |= sql.starts_with("INSERT INTO Tco");
    return inner_->Execute(sql);
  }
  void BeginTrans() override { inner_->BeginTrans(); }
  void CommitTrans() override {
    if (!pays_ || done_) return inner_->CommitTrans();
    done_ = true;
    stored_ ? inner_->CommitTrans() : inner_->RollbackTrans();
    throw CommitUnknown(DatabaseError("", "08S01"));
  }
  void RollbackTrans() override { inner_->RollbackTrans(); }
  bool InTransaction() const override { return inner_->InTransaction(); }

 private:
  std::unique_ptr<Connection> inner_;
  const bool stored_;
  bool pays_ = false;
  bool done_ = false;
};

constexpr const char* kSale = R"(set Caja 2
call zTpv
enter Text1(6) 2
enter Text1(0) 2
click cmdApertura
enter Text1(14) 100
click cmdGrabar
answer Yes
key Add
type 0121
key Enter
key Subtract
)";

constexpr const char* kNoAnswer = R"(
answer OK "No se ha podido grabar el cobro de la venta. \nSe perdió la conexión al grabar y no se sabe si quedó grabado. Compruébelo antes de repetirlo"
expect screen frmTpv1
expect documents 0
)";

class LostPayment : public testing::TestWithParam<bool> {
 protected:
  std::string Count(const std::string& from) {
    return till_.store().Execute("SELECT COUNT(*) FROM " + from)->Field(0).ToPlainText();
  }

  FixedClock clock_;
  TemporaryFolder folder_;
  TestTill till_{std::make_unique<Unanswered>(
                     OpenStore(folder_ / "tienda.db", Contents::Demonstration, clock_), GetParam()),
                 clock_};
};

TEST_P(LostPayment, IsStoredOnceHoweverItEnded) {
  EXPECT_EQ(till_.Play(std::string(kSale) + "click cmdTicket" + kNoAnswer +
                       "click cmdTicket\nexpect screen frmTpv\nexpect documents 1"), "");
  EXPECT_EQ(Count("Tco WHERE Tco_IdCav = (SELECT MAX(Cav_Id) FROM Cav)"), "1");
  EXPECT_EQ(Count("DiaCaj WHERE DiaCaj_Tipo = 1 AND DiaCaj_Caja = 2 AND DiaCaj_IdCierre = 0"), "1");
}

TEST_P(LostPayment, IsInvoicedOnceHoweverItEnded) {
  const std::string invoice = "click cmdFactura\nclick cmdFacturar";
  const std::string again =
      GetParam() ? "click cmdFactura\nanswer OK \"El cobro de la venta quedó grabado\"" : invoice;
  EXPECT_EQ(till_.Play(kSale + invoice + kNoAnswer + again + "\nexpect screen frmTpv"), "");
  EXPECT_EQ(Count("Tco WHERE Tco_IdCav = (SELECT MAX(Cav_Id) FROM Cav)"), "1");
  EXPECT_EQ(Count("Cav INNER JOIN Fav ON Fav_Id = Cav_IdFactura WHERE Cav_Situa = 2"), "1");
}

TEST_P(LostPayment, CollectsOnceHoweverItEnded) {
  EXPECT_EQ(till_.Play(std::string(kSale) +
                       "enter Text1(2) 22\nenter Text1(6) 0\nclick cmdTicket\nanswer Yes\nanswer No\n"
                       "answer Yes\nexpect screen frmTpv\nclick cmdPagos\nenter Text1(0) 2\n"
                       "enter Text1(2) 22\nclick Check2\nenter Text1(11) 1\nclick cmdTicket\nanswer OK \""
                       "Se perdió la conexión al grabar y no se sabe si quedó grabado. Compruébelo antes "
                       "de repetirlo\"\nexpect screen frmTpvMovCaja\nclick cmdTicket\n" +
                       (GetParam() ? "answer OK \"Las ventas pendientes del cliente han cambiado. Revise "
                                     "la selección\"" : "expect screen frmTpv")), "");
  EXPECT_EQ(Count("DiaCaj WHERE DiaCaj_Tipo = 2 AND DiaCaj_Entrega = 1 AND DiaCaj_IdCierre = 0"), "1");
}

INSTANTIATE_TEST_SUITE_P(Endings, LostPayment, testing::Bool());

}  // namespace
}  // namespace tpv
