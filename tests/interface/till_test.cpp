// A host that does everything wrong that a host can do, and one that does it right.
#include <sys/stat.h>
#include <unistd.h>

#include <cmath>
#include <thread>

#include "test_host.h"

namespace {

using Till = TestHost;

zrtpv_value Of(std::int32_t type) {
  zrtpv_value value = zrtpv_null();
  value.type = type;
  return value;
}

zrtpv_value Double(double number) {
  zrtpv_value value = Of(ZRTPV_DOUBLE);
  value.as.number = number;
  return value;
}

zrtpv_value Bytes(const char* bytes, std::size_t length) {
  zrtpv_value value = Of(ZRTPV_TEXT);
  value.as.text.bytes = bytes;
  value.as.text.length = length;
  return value;
}

TEST_F(Till, MembersAndVersionAreThoseOfTheHeader) {
  EXPECT_EQ(zrtpv_abi(), ZRTPV_ABI);
  EXPECT_STREQ(zrtpv_version(), ZRTPV_TEST_VERSION);
  const zrtpv_member* members = nullptr;
  ASSERT_EQ(zrtpv_members(&members), 17U);
  EXPECT_STREQ(members[4].name, "MyBd");
  EXPECT_EQ(members[4].id, 0x68030000U);
  EXPECT_STREQ(members[16].name, "fnPendienteCliente");
  EXPECT_EQ(members[16].id, 0x60030010U);
  EXPECT_EQ(members[16].arguments, 1U);
  std::uint32_t id = 0;
  EXPECT_EQ(zrtpv_id("ZTPV", &id), ZRTPV_OK);
  EXPECT_EQ(id, 0x60030005U);
}

TEST_F(Till, ThatFoundAPasswordOpenToOthersTellsItsHost) {
  std::ofstream(folder / "tpv.conf", std::ios::app) << "[TPV/Mail]\nPassword=secreta\n";
  ASSERT_EQ(::chmod((folder / "tpv.conf").c_str(), 0644), 0);
  Create();
  ASSERT_EQ(messages.size(), 1U);
  EXPECT_EQ(messages[0].rfind("Otros usuarios podían leer «" + folder / "tpv.conf" + "»", 0), 0U) << messages[0];
}

TEST_F(Till, PropertiesTakeWhatFitsAndSayWhatDoesNot) {
  Create();
  for (const char* name : {"IdCliente", "Caja", "IdAgente", "IdAlbaran"}) {
    EXPECT_EQ(Number(name), 0) << name;
    EXPECT_EQ(Put(name, zrtpv_text("-7")), ZRTPV_OK) << zrtpv_error();
    EXPECT_EQ(Number(name), -7) << name;
  }
  EXPECT_EQ(Put("caja", zrtpv_int32(32768)), ZRTPV_E_VALUE);
  EXPECT_EQ(zrtpv_error_code(), ZRTPV_E_VALUE);
  EXPECT_NE(std::string(zrtpv_error()).find("Caja"), std::string::npos) << zrtpv_error();
  EXPECT_NE(std::string(zrtpv_error()).find("32768"), std::string::npos) << zrtpv_error();
  EXPECT_EQ(Number("Caja"), -7);
  EXPECT_STREQ(zrtpv_error(), "");

  zrtpv_value argument = zrtpv_int32(3);
  EXPECT_EQ(zrtpv_invoke(till, 0x68030003, ZRTPV_PUT, &argument, 1, nullptr), ZRTPV_OK);
  EXPECT_EQ(Number("Caja"), 3);
  EXPECT_EQ(zrtpv_invoke(till, 0x68030009, ZRTPV_GET, nullptr, 0, nullptr), ZRTPV_E_ID);
  EXPECT_EQ(zrtpv_call(till, "Caja", nullptr, 0, nullptr), ZRTPV_E_KIND);
  EXPECT_EQ(zrtpv_get(till, "zTpv", nullptr), ZRTPV_E_KIND);
  EXPECT_EQ(zrtpv_invoke_name(till, "Caja", 4, nullptr, 0, nullptr), ZRTPV_E_KIND);
  EXPECT_EQ(zrtpv_call(till, "fnPendienteCliente", nullptr, 0, nullptr), ZRTPV_E_COUNT);
  EXPECT_EQ(zrtpv_call(till, "zOtro", nullptr, 0, nullptr), ZRTPV_E_NAME);
  EXPECT_EQ(zrtpv_call(till, "zTpv", nullptr, 0, nullptr), ZRTPV_E_COMPONENT);  // no MyBd yet
  EXPECT_EQ(Put("MyBd", zrtpv_int32(1)), ZRTPV_E_VALUE);
}

TEST_F(Till, HostileValuesAreRefusedAndChangeNothing) {
  Create();
  ASSERT_EQ(Put("IdCliente", zrtpv_int32(5)), ZRTPV_OK);
  zrtpv_value no_day = Of(ZRTPV_DATE);
  no_day.as.date = {2026, 2, 30, 0, 0, 0, 0};
  zrtpv_value invented = Of(ZRTPV_OBJECT);
  invented.as.object = reinterpret_cast<zrtpv_object*>(&invented);
  zrtpv_value huge = Of(ZRTPV_INT64);
  huge.as.int64 = INT64_MIN;
  const std::pair<zrtpv_value, std::int32_t> values[] = {
      {Of(77), ZRTPV_E_ARGUMENT},         {Of(-1), ZRTPV_E_ARGUMENT},
      {Bytes(nullptr, 5), ZRTPV_E_ARGUMENT}, {Bytes("1\0002", 3), ZRTPV_E_ARGUMENT},
      {Bytes("\xC3", 1), ZRTPV_E_ARGUMENT},  {no_day, ZRTPV_E_ARGUMENT},
      {invented, ZRTPV_E_HANDLE},         {Of(ZRTPV_OBJECT), ZRTPV_E_HANDLE},
      {Of(ZRTPV_NULL), ZRTPV_E_VALUE},    {Double(std::nan("")), ZRTPV_E_VALUE},
      {Double(INFINITY), ZRTPV_E_VALUE},  {Double(1.5), ZRTPV_E_VALUE},
      {huge, ZRTPV_E_VALUE},              {zrtpv_text("doce"), ZRTPV_E_VALUE},
      {Bytes("", 0), ZRTPV_E_VALUE}};
  for (const auto& [value, status] : values) {
    EXPECT_EQ(Put("IdCliente", value), status) << "type " << value.type << ": " << zrtpv_error();
    EXPECT_STRNE(zrtpv_error(), "");
  }
  EXPECT_EQ(Number("IdCliente"), 5);

  zrtpv_value result;
  EXPECT_EQ(zrtpv_call(till, "fnPendienteCliente", nullptr, 1, &result), ZRTPV_E_ARGUMENT);
  EXPECT_EQ(result.type, ZRTPV_NULL);
  zrtpv_value one = zrtpv_int32(1);
  EXPECT_EQ(zrtpv_call(till, "fnPendienteCliente", &one, SIZE_MAX, nullptr), ZRTPV_E_COUNT);
  EXPECT_EQ(zrtpv_get(till, nullptr, &result), ZRTPV_E_ARGUMENT);
  EXPECT_EQ(zrtpv_get(till, "\xFF", &result), ZRTPV_E_ARGUMENT);
  EXPECT_EQ(zrtpv_put(till, "Caja", nullptr), ZRTPV_E_ARGUMENT);
  EXPECT_EQ(zrtpv_id("Caja", nullptr), ZRTPV_E_ARGUMENT);
  EXPECT_EQ(zrtpv_set_text(&result, "\x80", 1), ZRTPV_E_ARGUMENT);
  EXPECT_EQ(zrtpv_clear(nullptr), ZRTPV_E_ARGUMENT);
  EXPECT_EQ(zrtpv_get(nullptr, "Caja", &result), ZRTPV_E_HANDLE);
  EXPECT_EQ(zrtpv_get(reinterpret_cast<zrtpv_till*>(&result), "Caja", &result), ZRTPV_E_HANDLE);
}

TEST_F(Till, OptionsOfOtherHeadersAreUnderstoodOrRefused) {
  zrtpv_till* other = nullptr;
  EXPECT_EQ(zrtpv_create(nullptr, nullptr), ZRTPV_E_ARGUMENT);
  zrtpv_options options = Options();
  options.size = sizeof options + 8;
  EXPECT_EQ(zrtpv_create(&options, &other), ZRTPV_E_ABI);
  options.size = 0;
  EXPECT_EQ(zrtpv_create(&options, &other), ZRTPV_E_ARGUMENT);
  options = Options();
  options.windows = 9;
  EXPECT_EQ(zrtpv_create(&options, &other), ZRTPV_E_ARGUMENT);
  zrtpv_components halves{};
  halves.size = sizeof halves;
  halves.create = [](void*, const char*, void**) { return 0; };
  options = Options();
  options.components = &halves;
  EXPECT_EQ(zrtpv_create(&options, &other), ZRTPV_E_ARGUMENT);
  EXPECT_EQ(other, nullptr);
  options.size = offsetof(zrtpv_options, components);  // a header without them
  EXPECT_EQ(zrtpv_create(&options, &other), ZRTPV_OK) << zrtpv_error();
  EXPECT_EQ(zrtpv_release(other), ZRTPV_OK);
}

TEST_F(Till, AnotherThreadIsRefusedAndHasTillsOfItsOwn) {
  CreateShop();
  zrtpv_object* database = Object();
  zrtpv_value held = Of(ZRTPV_OBJECT);
  held.owned = 1;
  held.as.object = database;
  std::thread([&] {
    zrtpv_value value = zrtpv_int32(9);
    EXPECT_EQ(zrtpv_put(till, "Caja", &value), ZRTPV_E_THREAD);
    EXPECT_EQ(zrtpv_call(till, "zTpv", nullptr, 0, nullptr), ZRTPV_E_THREAD);
    EXPECT_EQ(zrtpv_play(till, "call zTpv", nullptr), ZRTPV_E_THREAD);
    EXPECT_EQ(zrtpv_release(till), ZRTPV_E_THREAD);
    EXPECT_EQ(zrtpv_object_get(database, "IdUsuario", nullptr), ZRTPV_E_THREAD);
    EXPECT_EQ(zrtpv_object_release(database), ZRTPV_E_THREAD);
    EXPECT_EQ(zrtpv_clear(&held), ZRTPV_E_THREAD);
    const zrtpv_options options = Options();
    zrtpv_till* own = nullptr;
    ASSERT_EQ(zrtpv_create(&options, &own), ZRTPV_OK);
    EXPECT_EQ(zrtpv_put(own, "MyBd", &held), ZRTPV_E_THREAD);
    EXPECT_EQ(zrtpv_open_file(own, (folder / "t.db").c_str(), ZRTPV_MUST_EXIST, 1), ZRTPV_OK);
    EXPECT_EQ(zrtpv_call(own, "fnPendienteCliente", &value, 1, nullptr), ZRTPV_OK);
    EXPECT_EQ(zrtpv_release(own), ZRTPV_OK);
    EXPECT_EQ(zrtpv_get(till, "Caja", &value), ZRTPV_E_THREAD);
  }).join();
  EXPECT_STREQ(zrtpv_error(), "");  // this thread's own
  EXPECT_EQ(Number("Caja"), 0);
  EXPECT_EQ(zrtpv_clear(&held), ZRTPV_OK);
}

TEST_F(Till, ObjectsOutliveTheirTillAndNothingIsReleasedTwice) {
  CreateShop();
  zrtpv_object* database = Object();
  zrtpv_object* again = Object();
  EXPECT_EQ(database, again);  // the same object that was set
  zrtpv_value connection;
  ASSERT_EQ(zrtpv_object_get(database, "Conexion", &connection), ZRTPV_OK);
  EXPECT_EQ(Put("MyBd", connection), ZRTPV_E_VALUE);  // an object, but not that one
  zrtpv_value itself = connection;
  itself.as.object = database;
  EXPECT_EQ(Put("MyBd", itself), ZRTPV_OK) << zrtpv_error();
  zrtpv_value columns;
  ASSERT_EQ(zrtpv_object_get(database, "xlsCampos", &columns), ZRTPV_OK);
  EXPECT_EQ(zrtpv_object_release(again), ZRTPV_OK);
  EXPECT_EQ(zrtpv_object_release(database), ZRTPV_OK);
  EXPECT_EQ(zrtpv_release(till), ZRTPV_OK);
  EXPECT_EQ(zrtpv_release(till), ZRTPV_E_HANDLE);
  EXPECT_EQ(zrtpv_get(till, "Caja", nullptr), ZRTPV_E_HANDLE);
  till = nullptr;

  zrtpv_value statement = zrtpv_text("SELECT TOP 1 Age_Nom, getdate() AS d, cast(1.5 as money) AS m FROM Age");
  zrtpv_value rows;
  ASSERT_EQ(zrtpv_object_call(connection.as.object, "Execute", &statement, 1, &rows), ZRTPV_OK);
  EXPECT_EQ(zrtpv_clear(&connection), ZRTPV_OK);
  zrtpv_value column[] = {zrtpv_text("Age_Nom"), zrtpv_int32(3), zrtpv_text("Eva")};
  EXPECT_EQ(zrtpv_object_call(columns.as.object, "Add", column, 3, nullptr), ZRTPV_OK);
  EXPECT_EQ(zrtpv_clear(&columns), ZRTPV_OK);
  zrtpv_value field = zrtpv_text("age_nom");
  zrtpv_value value;
  ASSERT_EQ(zrtpv_object_call(rows.as.object, "Fields", &field, 1, &value), ZRTPV_OK);
  EXPECT_EQ(Text(value), "Ana Ruiz");
  field = zrtpv_int32(2);
  ASSERT_EQ(zrtpv_object_call(rows.as.object, "Fields", &field, 1, &value), ZRTPV_OK);
  EXPECT_EQ(value.type, ZRTPV_MONEY);
  EXPECT_EQ(value.as.int64, 15000);
  field = zrtpv_int32(3);
  EXPECT_EQ(zrtpv_object_call(rows.as.object, "Fields", &field, 1, &value), ZRTPV_E_DATABASE);
  zrtpv_object* const stale = rows.as.object;
  EXPECT_EQ(zrtpv_clear(&rows), ZRTPV_OK);
  EXPECT_EQ(zrtpv_object_get(stale, "EOF", nullptr), ZRTPV_E_HANDLE);
  EXPECT_EQ(zrtpv_object_release(stale), ZRTPV_E_HANDLE);
}

TEST_F(Till, ArgumentsByReferenceComeBack) {
  CreateShop();
  zrtpv_value customer = zrtpv_text("24");
  zrtpv_value debt;
  ASSERT_EQ(zrtpv_call(till, "fnPendienteCliente", &customer, 1, &debt), ZRTPV_OK) << zrtpv_error();
  EXPECT_EQ(customer.type, ZRTPV_INT32);
  EXPECT_EQ(customer.as.int32, 24);
  EXPECT_EQ(debt.type, ZRTPV_DOUBLE);
  // The row builder says by reference why it failed; the text is the host's.
  zrtpv_object* database = Object();
  zrtpv_value table = zrtpv_text("NoHayTal");
  ASSERT_EQ(zrtpv_object_put(database, "Tabla", &table), ZRTPV_OK);
  zrtpv_value reason = zrtpv_text("");
  zrtpv_value done;
  ASSERT_EQ(zrtpv_object_call(database, "Insert", &reason, 1, &done), ZRTPV_OK) << zrtpv_error();
  EXPECT_EQ(done.type, ZRTPV_BOOL);
  EXPECT_EQ(done.as.boolean, 0);
  EXPECT_EQ(reason.owned, 1);
  EXPECT_NE(Text(reason), "");
  zrtpv_object_release(database);
}

TEST_F(Till, AScenarioSharesTheContextAndTellsWhatDidNotHold) {
  CreateShop();
  ASSERT_EQ(Put("Caja", zrtpv_int32(2)), ZRTPV_OK);
  EXPECT_EQ(Play("expect property Caja 2\nset Caja 3\n# a screen\ncall zTpv\n"
                 "expect property IdCliente 1\nclose\nexpect screen none"), "");
  EXPECT_EQ(Number("IdCliente"), 1);  // the counter's customer: the screen put it there
  const std::string wrong = Play("expect property IdAgente 3\nset Caja 4");
  EXPECT_NE(wrong.find("FAILED guion:1"), std::string::npos) << wrong;
  EXPECT_EQ(Number("Caja"), 4);  // what failed does not stop what follows
  EXPECT_EQ(zrtpv_play(till, "bailar", nullptr), ZRTPV_E_SCRIPT);
  EXPECT_EQ(zrtpv_play(till, "include \"no hay.tpv\"", nullptr), ZRTPV_E_SCRIPT);
  EXPECT_EQ(zrtpv_play(till, "call zTpv\nclick cmdNueva", nullptr), ZRTPV_E_EXPECTATION);
  // Nobody is left standing on the stage.
  EXPECT_EQ(zrtpv_call(till, "zTpv", nullptr, 0, nullptr), ZRTPV_OK) << zrtpv_error();
}

TEST_F(Till, WithoutWindowsMessagesReachTheHostAndPaperThePrinter) {
  CreateShop();
  ASSERT_EQ(Put("IdAlbaran", zrtpv_int32(1)), ZRTPV_OK);
  // It prints behind the call's back, and later calls say what went wrong.
  const auto wait = [&](const auto& done) {
    for (int i = 0; i < 500 && !done(); ++i) {
      ::usleep(10'000);
      Number("Caja");
    }
    EXPECT_TRUE(done());
  };
  EXPECT_EQ(zrtpv_call(till, "Emite_Ticket", nullptr, 0, nullptr), ZRTPV_OK) << zrtpv_error();
  wait([&] { return std::filesystem::exists(folder / "paper") && !std::filesystem::is_empty(folder / "paper"); });
  EXPECT_TRUE(messages.empty());
  WriteSettings(folder / "tpv.conf/below");
  EXPECT_EQ(zrtpv_call(till, "Emite_Ticket", nullptr, 0, nullptr), ZRTPV_OK);
  wait([&] { return !messages.empty(); });
  EXPECT_EQ(messages.size(), 1U);
  EXPECT_TRUE(messages[0].starts_with("«Ticket T1» no se ha impreso")) << messages[0];
  messages.clear();

  EXPECT_EQ(zrtpv_open_file(till, (folder / "no.db").c_str(), ZRTPV_MUST_EXIST, 1), ZRTPV_E_DATABASE);
  EXPECT_EQ(zrtpv_open_file(till, (folder / "new.db").c_str(), 7, 1), ZRTPV_E_ARGUMENT);
  ASSERT_EQ(zrtpv_open_file(till, (folder / "new.db").c_str(), ZRTPV_MAKE_EMPTY, 1), ZRTPV_OK);
  EXPECT_EQ(zrtpv_call(till, "zTpv", nullptr, 0, nullptr), ZRTPV_OK) << zrtpv_error();
  EXPECT_FALSE(messages.empty());  // the warnings of a shop without parameters
}

}  // namespace
