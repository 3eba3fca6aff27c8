// The settings of this machine: kept whole, kept private, changed by a technician.
#include <gtest/gtest.h>

#include <sstream>
#include <thread>

#include "host/config.h"
#include "host/play.h"
#include "tests/paper_fixture.h"

namespace tpv {
namespace {

using PaperSettings = Paper;

TEST_F(PaperSettings, SurviveOddTextsAndLeaveTheRestOfTheFileAlone) {
  FileSettings& settings = machine.settings;
  EXPECT_EQ(settings.Read("OKRA", "Printer", "Spool"), "");
  settings.Write("OKRA", "Printer", "Spool", "Barra");
  EXPECT_EQ(settings.path(), folder / "config/tpv/tpv.conf");
  EXPECT_EQ(ModeOf(settings.path()), 0600);
  EXPECT_EQ(ModeOf(folder / "config/tpv"), 0700);
  std::ofstream(settings.path(), std::ios::app) << "# nuestra impresora\nRara=C:\\cola\n";

  const std::string odd = " a=b\\41 ]\r\n[OKRA/Printer]\nSpool=Otra ñ ";
  settings.Write("OKRA", "Odd [x]/y", "k=\n#", odd);
  EXPECT_EQ(settings.Read("okra", "ODD [X]/Y", "K=\n#"), odd);
  EXPECT_EQ(settings.Keys("OKRA", "Odd [x]/y"), std::vector<std::string>{"k=\n#"});
  settings.Write("OKRA", "PRINTER", "spool", "Cocina");
  EXPECT_EQ(FileSettings(settings.path()).Read("OKRA", "Printer", "Spool"), "Cocina");
  EXPECT_EQ(settings.Read("OKRA", "Printer", "Rara"), "C:\\cola");
  settings.Write("OKRA", "Printer", "Spool", "");
  EXPECT_EQ(settings.Keys("OKRA", "Printer"), std::vector<std::string>{"Rara"});
  EXPECT_NE(folder.Text("config/tpv/tpv.conf").find("# nuestra impresora\n"), std::string::npos);
}

TEST_F(PaperSettings, TwoTillsWritingAtOnceLoseNothing) {
  const auto write = [&](const std::string& till) {
    FileSettings settings(machine.settings.path());
    for (int i = 0; i < 20; ++i) settings.Write("TPV", till, std::to_string(i), "x");
  };
  std::thread other(write, "Segunda");
  write("Primera");
  other.join();
  EXPECT_EQ(machine.settings.Keys("TPV", "Primera").size(), 20U);
  EXPECT_EQ(machine.settings.Keys("TPV", "Segunda").size(), 20U);
}

TEST_F(PaperSettings, WithAPasswordAreNobodyElsesAndALinkStaysOne) {
  FileSettings& settings = machine.settings;
  settings.Write("TPV", "Mail", "User", "caja");
  ::chmod(settings.path().c_str(), 0644);
  EXPECT_EQ(settings.Protect(), "");
  settings.Write("TPV", "Mail", "Password", "Recon0cible");
  std::filesystem::rename(settings.path(), folder / "central.conf");
  std::filesystem::create_symlink("../../central.conf", settings.path());
  ::chmod((folder / "central.conf").c_str(), 0644);
  EXPECT_EQ(settings.Protect(), "Otros usuarios podían leer «" + settings.path() +
                                    "», que tiene la contraseña. Ya no pueden, pero conviene cambiarla");
  EXPECT_EQ(ModeOf(folder / "central.conf"), 0600);
  EXPECT_EQ(settings.Protect(), "");
  settings.Write("TPV", "Mail", "User", "otra");
  EXPECT_TRUE(std::filesystem::is_symlink(settings.path()));
  EXPECT_NE(folder.Text("central.conf").find("User=otra"), std::string::npos);
}

TEST_F(PaperSettings, ATechnicianChangesThemAndNeverSeesThePassword) {
  std::string shown;
  const auto config = [&](const std::vector<std::string>& words, const std::string& typed = "") {
    std::istringstream in(typed);
    std::ostringstream out;
    const int status = Config(machine, words, in, out);
    shown = out.str();
    return status;
  };
  config({"set", "printers.Barra 1.2", "escpos:10.0.0.5:9100"});
  config({"set", "Mail.password"}, "se creta=\n");
  config({"set", "Fiscal.Password"}, "otra\n");
  config({"set", "mail.PORT", "587"});
  config({"set", "sound.command", "aplay x.wav"});
  EXPECT_EQ(machine.settings.Read("TPV", "Mail", "Password"), "se creta=");
  config({});
  EXPECT_EQ(shown, "# " + machine.settings.path() +
                       "\nPrinters.Barra 1.2 = escpos:10.0.0.5:9100\nSound.Command = aplay x.wav\n"
                       "Fiscal.Password = (guardada)\nMail.Password = (guardada)\nMail.Port = 587\n");
  for (const char* password : {"Mail.Password", "Fiscal.Password"}) {
    config({"get", password});
    EXPECT_EQ(shown, "(guardada)\n");
    EXPECT_THROW(config({"set", password, "x"}), UsageError);
  }
  config({"printers"});
  EXPECT_EQ(shown, "* Barra 1.2\n  Carpeta de tickets\n");
  for (const std::vector<std::string>& wrong :
       std::vector<std::vector<std::string>>{{"set", "Mail.Port", "0"},
                                             {"set", "Mail.Security", "ssl"},
                                             {"set", "Printers.", "page"},
                                             {"set", "Printers.x", "escpos:"},
                                             {"set", "Devices.LPT1", "lp0"},
                                             {"set", "CodeTable.Barra", "859"},
                                             {"set", "Paper.Tickets", "tickets"},
                                             {"set", "Mial.Port", "1"}, {"set", "Mail"}, {"get"},
                                             {"other"}}) {
    EXPECT_THROW(config(wrong), UsageError) << wrong.back();
  }
  config({"try-printer", "Carpeta de tickets"});
  EXPECT_EQ(shown, folder / "data/tpv/tickets" + "\n");
  EXPECT_THROW(config({"try-printer", "--qr", "a", "b"}), UsageError);
  config({"unset", "Mail.Password"});
  EXPECT_EQ(machine.settings.Read("TPV", "Mail", "Password"), "");
  const auto missing = [&] {
    try {
      config({"try-mail", "jefa@tienda.es"});
    } catch (const std::runtime_error& error) {
      return std::string(error.what());
    }
    return std::string("nothing");
  };
  EXPECT_EQ(missing(), "falta el ajuste Mail.Server: tpv config set Mail.Server");
  config({"set", "Mail.Server", "127.0.0.1:1"});
  EXPECT_EQ(missing(), "falta el ajuste Mail.From: tpv config set Mail.From");
  config({"set", "Mail.User", "caja@tienda.es"});
  EXPECT_EQ(missing(), "falta el ajuste Mail.Password: tpv config set Mail.Password");
  config({"set", "Paper.Default", "Carpeta de tickets"});
  EXPECT_EQ(shown, "");
  EXPECT_THROW(config({"set", "Paper.Default", "Bara"}), UsageError);
  EXPECT_EQ(machine.settings.Read("TPV", "Paper", "Default"), "Carpeta de tickets");
  folder.Program("lpstat", "exit 1");  // nobody answers
  config({"set", "Paper.Default", "Bara"});
  EXPECT_NE(shown.find("no se ha comprobado que exista «Bara»"), std::string::npos) << shown;
}

}  // namespace
}  // namespace tpv
