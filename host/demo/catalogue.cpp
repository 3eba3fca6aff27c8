#include "host/demo/catalogue.h"

#include <vector>

#include "base/mask.h"
#include "base/rounding.h"
#include "base/text.h"
#include "data/decimals.h"
#include "host/demo/fill.h"
#include "office/places.h"

namespace tpv::demo {

namespace {

// Prices with tax, of those that any number of pieces up to twenty costs to the cent
// although a line's amount without tax is in cents.
struct ArticleData {
  const char* name;
  double price;
  int tax_class;
};

constexpr ArticleData kArticleData[kArticles] = {
#include "host/demo/articles.inc"
};

const ArticleData& DataOf(int article) { return kArticleData[(article - 1) % kArticles]; }

// The bar code of an article: 12 digits and the check digit over them.
std::string BarCode(int article) {
  const std::string text = "843621" + FormatNumber(article, "000000");
  int sum = 0;
  for (int i = 0; i < 12; ++i) sum += (text[i] - '0') * (i % 2 == 0 ? 1 : 3);
  return text + static_cast<char>('0' + (10 - sum % 10) % 10);
}

// A tax document with its control letter.
std::string Document(int number) {
  constexpr const char* kLetters = "TRWAGMYFPDXBNJZSQVHLCKE";
  return FormatNumber(number, "00000000") + kLetters[number % 23];
}

struct Person {
  const char* name;
  const char* surname1;
  const char* surname2;
  const char* street;
  const char* town;
  const char* post_code;
};

constexpr Person kPeople[kCustomers] = {
    {"María", "Núñez", "Peña", "Mayor", "Murcia", "30001"},
    {"José", "O'Brien", "López", "del Carmen", "Cartagena", "30201"},
    {"Àngels", "Güell", "Martí", "de l'Església", "Girona", "17001"},
    {"Begoña", "Íñiguez", "Ruiz", "Trapería", "Murcia", "30001"},
    {"Iñaki", "Etxeberria", "Sáez", "Gran Vía", "Bilbao", "48001"},
    {"Concepción", "D'Ors", "Vidal", "de la Paz", "València", "46003"},
    {"Ramón", "Cañizares", "Muñoz", "Sagasta", "Molina de Segura", "30500"},
    {"Lucía", "Fernández", "Álvarez", "Uría", "Oviedo", "33003"},
    {"Óscar", "Belmonte", "García", "Alfonso X", "Murcia", "30008"},
    {"Montserrat", "Puig", "i Cadafalch", "de Sants", "Barcelona", "08014"},
    {"Antonio", "Pérez", "Sánchez", "Real", "Alcantarilla", "30820"},
    {"Inés", "Guzmán", "Bermúdez", "Sierpes", "Sevilla", "41004"},
    {"Xoán", "Castiñeira", "Rey", "do Franco", "Santiago", "15702"},
    {"Pilar", "Ibáñez", "Gascón", "Alfonso I", "Zaragoza", "50003"},
    {"Julián", "Marín", "Ortuño", "Floridablanca", "Murcia", "30002"},
    {"Sofía", "L'Hôpital", "Blanco", "Serrano", "Madrid", "28001"},
    {"Andrés", "Hernández", "Cerdá", "San Antón", "Cartagena", "30205"},
    {"Rocío", "Jiménez", "Vargas", "Larios", "Málaga", "29005"},
    {"Agustín", "Zamora", "Conesa", "Mayor", "Torre Pacheco", "30700"},
    {"Remedios", "Ñíguez", "Alarcón", "de la Cruz", "Lorca", "30800"},
    {"Hotel Miramar", "", "", "Puerto de Mazarrón", "Mazarrón", "30860"},
    {"Bar El Rincón", "", "", "Santa Eulalia", "Murcia", "30003"},
    {"Restaurante Casa Peña", "", "", "Jabonerías", "Murcia", "30001"},
    {"Cafetería O'Donnell", "", "", "O'Donnell", "Madrid", "28009"},
    {"Colegio San Andrés", "", "", "del Rosario", "Murcia", "30005"},
    {"Panadería Muñoz e Hijos", "", "", "Mayor", "Beniaján", "30570"},
    {"Guardería Pequeñines", "", "", "Cervantes", "Murcia", "30007"},
    {"Tomás", "Ballester", "Giménez", "Ceuta", "Murcia", "30003"},
    {"Encarnación", "Soler", "Ayala", "Cánovas", "Yecla", "30510"},
    {"Francisco", "Martínez", "Martínez", "Mayor", "Jumilla", "30520"},
    {"Rosario", "Abellán", "Tomás", "Nueva", "Cieza", "30530"},
    {"Joaquín", "Roldán", "Espín", "Correos", "Caravaca", "30400"},
    {"Nuria", "Vilaró", "Camps", "Diagonal", "Barcelona", "08036"},
    {"Ángel", "Cortés", "Méndez", "Real", "Águilas", "30880"},
    {"Marta", "Quiñones", "Cobo", "Triana", "Las Palmas", "35002"},
    {"Víctor", "Saavedra", "Lugo", "Castillo", "Santa Cruz", "38003"},
    {"Elena", "Echevarría", "Ortiz", "Estafeta", "Pamplona", "31001"},
    {"Pedro", "Baños", "Campillo", "Ancha", "Totana", "30850"},
    {"Yolanda", "Gómez", "Cánovas", "Olma", "San Javier", "30730"},
    {"Comunidad Parque Sol", "", "", "Juan de Borbón", "Murcia", "30110"}};

void FillTaxes(Connection& connection) {
  const DateTime from{2012, 9, 1};
  for (int tax_class = 1; tax_class <= 4; ++tax_class) {
    Insert(connection, "zrcomun.dbo.tivas", "Tiva_iva, Tiva_rec, tiva_reg, tiva_art, Tiva_Fecha",
           {RateOf(tax_class), tax_class == 4 ? 5.2 : 0.0, 1, tax_class, from});
  }
}

void FillArticles(Connection& connection, int articles) {
  for (int article = 1; article <= articles; ++article) {
    Insert(connection, "ART", "ART_Cod, ART_BARCODE, art_des, art_pve, art_tiva, art_alma",
           {CodeOf(article), BarCode(article), NameOf(article), NetPriceOf(article), TaxClassOf(article), 1});
    Insert(connection, "Exis", "exis_idart, exis_idalma, exis_uni", {article, 1, 100.0});
  }
}

void FillCustomer(Connection& connection, int index) {
  const Person& person = kPeople[index];
  const int id = index + 2;
  const bool company = *person.surname1 == '\0';
  const std::string trade = company ? person.name : std::string(person.surname1) + ", " + person.name;
  Insert(connection, "Cli",
         "CLI_COD, CLI_NOM, CLI_APE1, CLI_APE2, CLI_COMER, CLI_FCO, cli_doc, Cli_Reg, Cli_Cta, "
         "cli_ban, Cli_Di1, Cli_Di2, Cli_msp",
         {id, person.name, person.surname1, person.surname2, trade, company ? 3 : 1,
          Document(22000000 + index * 137911), 1, company ? "20380000000000012345" : "",
          company ? 1 : 0, company ? 10 : 0, company ? 25 : 0, company ? 8 : 0});
  Insert(connection, "Dir",
         "DIR_SG, DIR_NOMBRE, DIR_NUMERO, DIR_PISO, DIR_PUERTA, DIR_CP, DIR_PAIS, DIR_PROVINCIA, "
         "DIR_POBLACION",
         {"CL", person.street, 3 + index * 2, std::to_string(1 + index % 5), "A", person.post_code,
          "011", Left(person.post_code, 2), person.town});
  Insert(connection, "CliDir", "CLIDIR_CLI, CLIDIR_DIR", {id, index + 1});
  if (!company) return;
  for (const int article : {10 + index, 60 + index}) {
    Insert(connection, "artcli", "artcli_idart, artcli_idcli, artcli_dto1, artcli_dto2, artcli_fijo",
           {article, id, 5.0, 0.0, article < 60 ? Sql(NetPriceOf(article) * 0.5) : Null()});
  }
}

void FillPaymentMethods(Connection& connection) {
  struct Method {
    const char* name;
    int mode;
    std::vector<int> days;  // of its parts, all of one size
  };
  const Method methods[] = {{"Contado", 1, {0}},
                            {"Tarjeta", 1, {0}},
                            {"Recibo 30 días", 2, {30}},
                            {"Giro 30/60 días", 2, {30, 60}},
                            {"Transferencia", 4, {15}}};
  int id = 0;
  for (const Method& method : methods) {
    Insert(connection, "Fco", "Fco_Des", {method.name});
    ++id;
    Insert(connection, "Fcol", "Fcol_id, Fcol_Mod", {id, method.mode});
    for (const int days : method.days) {
      Insert(connection, "Plazos", "plazo_idfco, plazo_modo, plazo_dias, plazo_por",
             {id, method.mode, days, 100.0 / static_cast<double>(method.days.size())});
    }
  }
}

}  // namespace

double NetPriceOf(int article) {
  return RoundHalfAway(DataOf(article).price / (1 + RateOf(TaxClassOf(article)) / 100),
                       kNewShopPriceDecimals);
}
int TaxClassOf(int article) { return DataOf(article).tax_class; }

std::string NameOf(int article) {
  const std::string name = DataOf(article).name;
  return article <= kArticles ? name : name + " ref. " + std::to_string((article - 1) / kArticles);
}

std::string CodeOf(int article) { return FormatNumber(article, "0000"); }

double RateOf(int tax_class) {
  constexpr double kRates[] = {21, 10, 4, 21};
  return kRates[tax_class - 1];
}

void FillCatalogue(Connection& connection, int articles) {
  office::FillPlaces(connection);
  FillTaxes(connection);
  Insert(connection, "alm", "alm_des", {"Almacén de la tienda"});
  FillArticles(connection, articles);
}

void FillPeople(Connection& connection) {
  for (const char* name : {"Ana Ruiz", "José Peña", "Lucía Íñiguez", "Manuel O'Connor",
                           "Carmen Sáez", "Francisco Javier Fernández"}) {
    Insert(connection, "Age", "Age_NOM, Age_Reg", {name, 1});
  }
  FillPaymentMethods(connection);
  Insert(connection, "BANCOS", "Ban_CCC", {"21000000000000067890"});
  int supplier = 0;
  for (const char* name : {"Lácteos del Norte", "Conservas Marín", "Bodegas Peñalba",
                           "Limpiezas L'Avenç", "Cafés Torrefacto"}) {
    Insert(connection, "Pro", "Pro_Cod, Pro_Nom", {100 + ++supplier, name});
  }
  Insert(connection, "Cli", "CLI_COD, CLI_NOM, CLI_COMER, CLI_FCO, cli_doc, Cli_Reg",
         {1, "CLIENTE CONTADO", "CLIENTE CONTADO", 1, "", 1});
  for (int index = 0; index < kCustomers; ++index) FillCustomer(connection, index);
}

}  // namespace tpv::demo
