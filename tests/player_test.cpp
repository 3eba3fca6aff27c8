// The player is as strict as its language promises: what it lets pass, nobody
// finds later.
#include <gtest/gtest.h>

#include <fstream>
#include <sstream>

#include "adapters/headless/scenario/script.h"
#include "host/play.h"
#include "tests/test_store.h"

namespace tpv {
namespace {

struct Outcome {
  int status;
  std::string transcript;
};

class PlayerTest : public testing::Test {
 protected:
  std::string Write(const std::string& name, const std::string& text) {
    std::string path = store.path() + "." + name;
    std::ofstream(path) << text;
    return path;
  }

  Outcome PlayText(const std::string& text) {
    PlayOptions options;
    options.empty = true;
    options.now = DateTime{2026, 11, 24, 10, 30, 0, 0};
    options.files = {Write("guion.tpv", text)};
    std::ostringstream transcript;
    try {
      const int status = Play(options, transcript);
      return {status, transcript.str()};
    } catch (const scenario::ScriptError& error) {
      return {2, error.what()};
    }
  }

  TestStore store;  // its folder holds the scripts
};

TEST_F(PlayerTest, EveryBrokenPromiseIsAFailure) {
  constexpr const char* kOpen = "param Par_SerTicFac F\nparam Par_Alma 1\ncall zTpv\n";
  const char* const failing[] = {
      "expect Text1(6) \"9\"", "expect cmdNueva \"Nueva Venta\"", "expect screen none",
      "expect focus Text1(0)", "expect enabled cmdFinalizar True",
      "expect visible cmdNueva False", "expect rows dbgVenta 1", "expect cell dbgVenta 0 5 \"x\"",
      "expect property Caja 1", "expect sql \"1\" SELECT Cav_Id FROM Cav",
      "expect sql \"\" SELECT Cav_Id FROM Cav", "expect call fnPendienteCliente 1 5",
      "expect printed \"x\"", "expect documents 1", "expect device LPT1 00", "expect raw 00",
      "expect mails 1", "expect mail \"x\"", "expect setting \"x\"", "expect printer \"Tickets\"",
      "expect sent \"SELECT\"", "click cmdFinalizar", "focus Text1(21)", "click NoHay",
      "type x\nclick cmdNueva\nanswer Yes", "click cmdNueva\nanswer OK \"otro texto\"",
      "click cmdNueva\nclick cmdNueva", "click cmdNueva", "answer OK", "pick 0",
      "focus Text1(0)\nkey F1\npick 0", "focus Text1(0)\nkey F1\npick \"nadie\"",
      "focus Text1(0)\nkey F1\nkey Enter", "fails click cmdSalir", "menu mnuImprimir",
      "sql SELECT NoHay FROM Cav", "call NoHay", "set Caja 99999", "other SELECT NoHay FROM Cav",
      "expect title \"Otra\"", "expect sound error", "scan 1\nexpect Text1(6) \"\"",
  };
  for (const char* script : failing) {
    const Outcome outcome = PlayText(std::string(kOpen) + script + "\n");
    EXPECT_EQ(outcome.status, 1) << script << "\n" << outcome.transcript;
    EXPECT_NE(outcome.transcript.find("FAILED "), std::string::npos) << script;
  }
  EXPECT_EQ(PlayText(std::string(kOpen) + "click cmdNueva\nanswer Default\nclose\n").status, 0);
}

TEST_F(PlayerTest, AFailedExpectationGoesOnAndNamesItsLine) {
  const Outcome outcome = PlayText("# nada\nexpect documents 1\nexpect documents 2\ncall Abre_Cajon\n");
  EXPECT_NE(outcome.transcript.find("guion.tpv:2: expected \"1\", found \"0\""), std::string::npos)
      << outcome.transcript;
  EXPECT_NE(outcome.transcript.find("guion.tpv:3:"), std::string::npos);
  EXPECT_NE(outcome.transcript.find("call Abre_Cajon"), std::string::npos);
}

TEST_F(PlayerTest, AWrongScriptIsNotPlayedAtAll) {
  for (const char* script : {"hacer algo", "click", "key Enter Tab", "expect enabled cmdNueva",
                             "enter Text1(6)", "call zTpv \"sin cerrar", "key Intro",
                             "fail impresora", "answer Quizas", "mail quizas", "expect enabled a b",
                             "include no-existe.tpv", "fails hacer", "expect sound alto",
                             "config Nada.Nada 1", "config Mail.Port 0"}) {
    const Outcome outcome = PlayText(std::string("call Abre_Cajon\n") + script + "\n");
    EXPECT_EQ(outcome.status, 2) << script << "\n" << outcome.transcript;
    EXPECT_NE(outcome.transcript.find("guion.tpv:2"), std::string::npos) << outcome.transcript;
  }
  Write("parte.tpv", "expect documents 0\n");
  const std::string part = store.path() + ".parte.tpv";
  EXPECT_EQ(PlayText("include " + part.substr(part.rfind('/') + 1) + "\n").status, 0);
}

TEST_F(PlayerTest, RowsAndResultsPrintPlainly) {
  const Outcome outcome = PlayText(
      "sql SELECT 1.50 AS a, NULL AS b, cast('24/11/2026 09:05' as datetime) AS c, 'x' AS d\n"
      "call fnPendienteCliente 3\n");
  EXPECT_NE(outcome.transcript.find("\n1.5 | NULL | 2026-11-24 09:05:00 | x\n"), std::string::npos)
      << outcome.transcript;
  EXPECT_NE(outcome.transcript.find("\nfnPendienteCliente = 0\n"), std::string::npos);
}

// Both front ends: a killed till leaves nothing behind but what it had committed.
TEST_F(PlayerTest, AKilledTillStartsAgainWithoutAWordMore) {
  constexpr const char* kKilled =
      "param Par_SerTicFac F\nparam Par_Alma 1\nset Caja 4\n"
      "call zTpv\nclick cmdNueva\nkill\n"  // under a message box
      "expect screen none\nexpect property Caja 0\n"
      "sql INSERT INTO Alm (Alm_Id) VALUES (1)\n"
      "call zTpv\nfocus Text1(0)\nkey F1\nkill\n"  // under a search
      "expect screen none\nexpect sql \"1\" SELECT COUNT(*) FROM Alm\n"
      "other INSERT INTO Alm (Alm_Id) VALUES (2)\nexpect sql \"2\" SELECT COUNT(*) FROM Alm\n"
      "kill\nforget\ncall zTpv\nexpect screen frmTpv\nexpect title \"Punto de venta rapido: "
      "1.0.0\"\n"
      "click cmdNueva\nscan 8436210000011\nanswer OK\n"  // no scanner closes a box
      "expect enabled cmdFinalizar False\nkill\nexpect documents 0\n";
  for (const bool windows : {false, true}) {
    PlayOptions options;
    options.empty = true;
    options.windows = windows;
    options.now = DateTime{2026, 11, 24, 10, 30, 0, 0};
    options.files = {Write("muerta.tpv", kKilled)};
    std::ostringstream transcript;
    try {
      EXPECT_EQ(Play(options, transcript), 0) << transcript.str();
    } catch (const UsageError&) {
      EXPECT_TRUE(windows) << "built without windows";
    }
  }
}

}  // namespace
}  // namespace tpv
