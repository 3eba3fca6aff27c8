// Ends a till's working period: what happened since its opening, the cash taken
// out of the drawer, one closure entry, and its ticket.
#pragma once

#include <optional>
#include <vector>

#include "cash/cash_count.h"
#include "cash/closing_period.h"
#include "screen/screen.h"

namespace tpv {

struct Closure;
class ClosureFailed;
class TillRefusal;

class FrmTpvCierreCaja : public Screen {
 public:
  explicit FrmTpvCierreCaja(Context& ctx);

  // Empties every box but date and agent, and the grids.
  void msValoresiniciales();

  ui::TextBoxes Text1{*this, "Text1"};

  void OnLoad() override;

 protected:
  void OnF1(std::string_view tag) override;

 private:
  void DeclareFields();
  void DeclareLayout();
  void Connect();

  void LeaveAgent();
  void LeaveWithdrawal();
  bool RequireAgent();

  void StartProcess();
  void ListTills();
  void ChooseTill(int row);
  void ShowPeriod();
  void ShowFigures(const ClosingPeriod& period);
  void ForgetTill();
  void ShowEuros(int index, double euros);

  bool CheckDate();
  bool CheckWithdrawal();
  bool CheckTill();
  bool CheckDay();
  void CountCash();
  void ShowCount();
  void Save();
  Closure Entered() const;
  std::int32_t StoreSayingSo();
  std::optional<std::int32_t> Store();
  void TellRefusal(const TillRefusal& refusal);
  void TellFailure(const ClosureFailed& failure);
  void PrintTicket(std::int32_t closure_id);
  void BackToTills();
  void ShowJournal();

  ui::CheckBox Check1{*this, "Check1", "Imprimir cierre", true};
  ui::CheckBox Check2{*this, "Check2", "Fecha Cierre (Servidor)", true};
  ui::ListView ListView1{*this, "ListView1"};
  ui::Grid DbgDiario{*this, "DbgDiario"};
  ui::Grid dbgCajas{*this, "dbgCajas"};
  ui::Frame Frame1{*this, "Frame1", "Cierre caja:"};
  ui::Frame Frame2{*this, "Frame2"};
  ui::Frame Frame4{*this, "Frame4"};
  ui::Label lblProceso{*this, "lblProceso"};
  ui::Label lblArqueo{*this, "lblArqueo"};
  ui::Button cmdProceso{*this, "cmdProceso", "&Iniciar Proceso"};
  ui::Button cmdGrabar{*this, "cmdGrabar", "&Grabar "};
  ui::Button cmdArqueo{*this, "cmdArqueo", "Con&tar efectivo"};
  ui::Button cmdCancelar{*this, "cmdCancelar", "&Cancelar"};
  ui::Button cmdInforme{*this, "cmdInforme", "Informe &diario de Cierres "};
  ui::Button cmdSalir{*this, "cmdSalir", "&Salir"};

  std::vector<OpenTill> tills_;       // as listed
  std::optional<Opening> opening_;    // of the till chosen, if one is
  std::string mark_;
  std::optional<CashCount> count_;    // of the drawer of the till chosen
};

}  // namespace tpv
