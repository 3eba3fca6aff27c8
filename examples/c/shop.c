/*
 * A host in C: sells one ticket on credit, asks what the customer owes and
 * prints the ticket again.
 *
 *   shop STORE SCENARIO [SETTINGS]
 *
 * STORE is made as the demonstration shop when it is missing. Without SETTINGS
 * the ticket goes where the user's till prints.
 */
#include <stdio.h>
#include <stdlib.h>
#include <zrtpv.h>

static void check(int32_t status, const char *what) {
  if (status == ZRTPV_OK) return;
  fprintf(stderr, "%s: %s (%d)\n", what, zrtpv_error(), (int)status);
  exit(1);
}

static char *read_file(const char *path) {
  FILE *file = fopen(path, "rb");
  char *text = calloc(1, 65536);
  if (file == NULL || text == NULL || fread(text, 1, 65535, file) == 0) {
    fprintf(stderr, "cannot read %s\n", path);
    exit(2);
  }
  fclose(file);
  return text;
}

static double debt_of(zrtpv_till *till, int32_t customer) {
  zrtpv_value argument = zrtpv_int32(customer);
  zrtpv_value debt;
  check(zrtpv_call(till, "fnPendienteCliente", &argument, 1, &debt), "fnPendienteCliente");
  return debt.as.number; /* euros; nothing to release in a number */
}

/* The newest ticket, through the connection of MyBd. */
static int32_t last_ticket(zrtpv_till *till) {
  zrtpv_value database, connection, rows, ticket;
  zrtpv_value statement = zrtpv_text("SELECT MAX(Cav_Id) FROM Cav WHERE Cav_Ticket = 1");
  zrtpv_value first = zrtpv_int32(0);
  check(zrtpv_get(till, "MyBd", &database), "MyBd");
  check(zrtpv_object_get(database.as.object, "Conexion", &connection), "Conexion");
  check(zrtpv_object_call(connection.as.object, "Execute", &statement, 1, &rows), "Execute");
  check(zrtpv_object_call(rows.as.object, "Fields", &first, 1, &ticket), "Fields");
  zrtpv_clear(&rows);
  zrtpv_clear(&connection);
  zrtpv_clear(&database);
  return ticket.type == ZRTPV_INT64 ? (int32_t)ticket.as.int64 : ticket.as.int32;
}

static void sell(zrtpv_till *till, const char *scenario) {
  zrtpv_value transcript;
  const int32_t status = zrtpv_play(till, scenario, &transcript);
  if (transcript.type == ZRTPV_TEXT) fputs(transcript.as.text.bytes, stdout);
  check(status, "scenario");
  zrtpv_clear(&transcript);
}

int main(int argc, char **argv) {
  const int32_t customer = 24;
  zrtpv_options options = {0};
  zrtpv_value number;
  zrtpv_till *till;
  char *scenario;
  double before;
  if (argc < 3) {
    fprintf(stderr, "shop STORE SCENARIO [SETTINGS]\n");
    return 2;
  }
  scenario = read_file(argv[2]);
  options.size = sizeof options;
  options.windows = ZRTPV_HEADLESS;
  options.settings = argc > 3 ? argv[3] : NULL;
  check(zrtpv_create(&options, &till), "create");
  check(zrtpv_open_file(till, argv[1], ZRTPV_MAKE_DEMO, 1), "open");
  number = zrtpv_int32(1);
  check(zrtpv_put(till, "Caja", &number), "Caja");
  check(zrtpv_put(till, "IdAgente", &number), "IdAgente");

  before = debt_of(till, customer);
  sell(till, scenario);
  printf("owed before %.2f, now %.2f\n", before, debt_of(till, customer));

  number = zrtpv_int32(last_ticket(till));
  check(zrtpv_put(till, "IdAlbaran", &number), "IdAlbaran");
  check(zrtpv_call(till, "Emite_Ticket", NULL, 0, NULL), "Emite_Ticket");
  printf("ticket %d printed\n", (int)number.as.int32);
  check(zrtpv_release(till), "release");
  free(scenario);
  return 0;
}
