"""A host in Python: sells one ticket on credit, asks what the customer owes and
prints the ticket again.

    shop.py LIBRARY STORE SCENARIO [SETTINGS]
"""

import sys

import zrtpv

CUSTOMER = 24


def last_ticket(till):
    database = till.get("MyBd")
    connection = database.get("Conexion")
    rows = connection.call("Execute", "SELECT MAX(Cav_Id) AS id FROM Cav WHERE Cav_Ticket = 1")
    ticket = rows.call("Fields", "id")
    for held in (rows, connection, database):
        held.release()
    return ticket


def main(library, store, scenario, settings=None):
    shop = zrtpv.Library(library)
    print("zrtpv", shop.version())
    with zrtpv.Till(shop, settings=settings) as till:
        till.open_file(store, zrtpv.MAKE_DEMO)
        till.put("Caja", 1)
        till.put("IdAgente", 1)
        before = till.call("fnPendienteCliente", CUSTOMER)
        with open(scenario, encoding="utf-8") as file:
            print(till.play(file.read()), end="")
        print(f"owed before {before:.2f}, now {till.call('fnPendienteCliente', CUSTOMER):.2f}")
        ticket = last_ticket(till)
        till.put("IdAlbaran", ticket)
        till.call("Emite_Ticket")
        print("ticket", ticket, "printed")


if __name__ == "__main__":
    main(*sys.argv[1:])
