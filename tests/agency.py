#!/usr/bin/python3
"""A stand-in of the tax agency on the loopback for the tests.

agency.py FOLDER CERTIFICATE KEY CLIENTS [SCHEMAS]: prints its port, then takes messages of
records over TLS from holders of a certificate that CLIENTS vouches for, until its input
ends. It checks each message by the schemas (where there are some), each fingerprint and the
chain. FOLDER/orders says what it does with the next messages, one a line; without a line
left it takes everything:

  fault TEXT          refuses the message        silent   takes the message and says nothing
  lose                takes it and cuts          html     answers something else
  reject N TEXT       refuses the Nth record     errors N accepts the Nth with errors
  wait SECONDS        takes all, wants a pause

FOLDER/log gets a line for each message: what it held and what was wrong with it.
"""
import hashlib
import http.server
import os
import pathlib
import ssl
import subprocess
import sys
import threading
import time
import xml.etree.ElementTree as tree
from xml.sax.saxutils import escape

folder = pathlib.Path(sys.argv[1])
BASE = "https://www2.agenciatributaria.gob.es/static_files/common/internet/dep/aplicaciones/es/aeat/tike/cont/ws/"
SF, LR, R = (f"{{{BASE}{name}.xsd}}" for name in ("SuministroInformacion", "SuministroLR", "RespuestaSuministro"))
held = {}        # number: state of what the agency holds
refused = set()  # numbers that it refused
chain = {}       # fingerprint: the one before, of every record that was ever sent
tip = [""]
lock = threading.Lock()


def text(node, path):
    found = node.find("/".join(SF + step for step in path.split("/")))
    return "" if found is None else (found.text or "").strip()


def fingerprint(record, cancels):
    ending = "Anulada" if cancels else ""
    names = [f"{name}{ending}" for name in ("IDEmisorFactura", "NumSerieFactura", "FechaExpedicionFactura")]
    fields = [(name, text(record, "IDFactura/" + name)) for name in names]
    if not cancels:
        fields += [(name, text(record, name)) for name in ("TipoFactura", "CuotaTotal", "ImporteTotal")]
    fields.append(("Huella", text(record, "Encadenamiento/RegistroAnterior/Huella")))
    fields.append(("FechaHoraHusoGenRegistro", text(record, "FechaHoraHusoGenRegistro")))
    joined = "&".join(f"{name}={value}" for name, value in fields)
    return hashlib.sha256(joined.encode()).hexdigest().upper()


def chain_errors(record, cancels):
    mark, before = text(record, "Huella"), text(record, "Encadenamiento/RegistroAnterior/Huella")
    if mark != fingerprint(record, cancels):
        yield "fingerprint"
    if mark in chain:
        return
    if before != tip[0] or (text(record, "Encadenamiento/PrimerRegistro") == "S") != (tip[0] == ""):
        yield "chain"
    chain[mark] = before
    tip[0] = mark


def schema_errors(body):
    if len(sys.argv) < 6:
        return []
    (folder / "body.xml").write_bytes(body)
    run = subprocess.run(["xmllint", "--nonet", "--noout", "--schema", sys.argv[5] + "/SuministroLR.xsd",
                          str(folder / "body.xml")], capture_output=True, text=True)
    return [] if run.returncode == 0 else ["schema " + run.stderr.replace("\n", " ")]


def judge(record, cancels, order):
    """State, code, text and what is held of a record."""
    number = text(record, "IDFactura/NumSerieFactura" + ("Anulada" if cancels else ""))
    mends = text(record, "Subsanacion") == "S"
    if order[0] == "reject":
        refused.add(number)
        return "Incorrecto", 1100, order[1], None
    if cancels:
        if number not in held:
            return "Incorrecto", 3002, "No existe el registro de facturación", None
        held[number] = "Anulada"
    elif number in held and not mends:
        return "Incorrecto", 3000, "Registro de facturación duplicado", held[number]
    elif mends and number not in held and text(record, "RechazoPrevio") != "X":
        return "Incorrecto", 3001, "El registro que se subsana no existe", None
    else:
        held[number] = "AceptadaConErrores" if order[0] == "errors" else "Correcta"
    if order[0] == "errors":
        return "AceptadoConErrores", 2000, "El cálculo de la huella no coincide", None
    return "Correcto", 0, "", None


def line(record, cancels, order):
    state, code, why, kept = judge(record, cancels, order)
    ending = "Anulada" if cancels else ""
    key = "".join(f"<sf:{name}>{escape(text(record, f'IDFactura/{name}{ending}'))}</sf:{name}>"
                  for name in ("IDEmisorFactura", "NumSerieFactura", "FechaExpedicionFactura"))
    error = f"<r:CodigoErrorRegistro>{code}</r:CodigoErrorRegistro><r:DescripcionErrorRegistro>" \
            f"{escape(why)}</r:DescripcionErrorRegistro>" if code else ""
    duplicate = f"<r:RegistroDuplicado><sf:IdPeticionRegistroDuplicado>1</sf:IdPeticionRegistroDuplicado>" \
                f"<sf:EstadoRegistroDuplicado>{kept}</sf:EstadoRegistroDuplicado></r:RegistroDuplicado>" if kept else ""
    return f"<r:RespuestaLinea><r:IDFactura>{key}</r:IDFactura><r:Operacion><sf:TipoOperacion>" \
           f"{'Anulacion' if cancels else 'Alta'}</sf:TipoOperacion></r:Operacion>" \
           f"<r:EstadoRegistro>{state}</r:EstadoRegistro>{error}{duplicate}</r:RespuestaLinea>", state


def soap(body):
    return '<?xml version="1.0" encoding="UTF-8"?><env:Envelope xmlns:env="http://schemas.xmlsoap.org/soap/' \
           f'envelope/"><env:Body>{body}</env:Body></env:Envelope>'


def answer(message, wait, orders):
    head = message.find(LR + "Cabecera")
    lines, states = [], []
    for number, holder in enumerate(message.findall(LR + "RegistroFactura"), 1):
        record = holder[0]
        one, state = line(record, record.tag == SF + "RegistroAnulacion", orders.get(number, ["ok"]))
        lines.append(one)
        states.append(state)
    bad = states.count("Incorrecto")
    whole = "Correcto" if set(states) == {"Correcto"} else "Incorrecto" if bad == len(states) else "ParcialmenteCorrecto"
    receipt = "" if whole == "Incorrecto" else "<r:CSV>A-1234</r:CSV>"
    issuer = "".join(f"<sf:{name}>{escape(text(head, 'ObligadoEmision/' + name))}</sf:{name}>"
                     for name in ("NombreRazon", "NIF"))
    return soap(f'<r:RespuestaRegFactuSistemaFacturacion xmlns:r="{R[1:-1]}" xmlns:sf="{SF[1:-1]}">{receipt}'
                f"<r:Cabecera><sf:ObligadoEmision>{issuer}</sf:ObligadoEmision></r:Cabecera>"
                f"<r:TiempoEsperaEnvio>{wait}</r:TiempoEsperaEnvio><r:EstadoEnvio>{whole}</r:EstadoEnvio>"
                f"{''.join(lines)}</r:RespuestaRegFactuSistemaFacturacion>"), states


def next_order():
    path = folder / "orders"
    lines = path.read_text().splitlines() if path.exists() else []
    if not lines:
        return "ok", ""
    path.write_text("".join(rest + "\n" for rest in lines[1:]))
    verb, _, rest = lines[0].partition(" ")
    return verb, rest


class Agency(http.server.BaseHTTPRequestHandler):
    def do_POST(self):
        content = self.rfile.read(int(self.headers["Content-Length"]))
        with lock:
            quiet = self.take(content)
        if quiet:  # whoever asks next is answered meanwhile
            time.sleep(60)
            self.connection.close()

    def take(self, content):
        verb, rest = next_order()
        message = tree.fromstring(content).find(f".//{LR}RegFactuSistemaFacturacion")
        errors = schema_errors(tree.tostring(message))
        records = [holder[0] for holder in message.findall(LR + "RegistroFactura")]
        for record in records:
            errors += chain_errors(record, record.tag == SF + "RegistroAnulacion")
        incident = text(message.find(LR + "Cabecera"), "RemisionVoluntaria/Incidencia") == "S"
        report = f"{len(records)} {'outage ' if incident else ''}{verb}"
        if verb in ("fault", "html"):
            self.log(report, errors)
            fault = f"<env:Fault><faultcode>env:Client</faultcode><faultstring>{escape(rest)}</faultstring></env:Fault>"
            return self.send(500 if verb == "fault" else 200, soap(fault) if verb == "fault" else "<html>Hola</html>")
        orders = {}
        if verb in ("reject", "errors"):
            number, _, why = rest.partition(" ")
            orders[int(number)] = [verb, why]
        whole, states = answer(message, rest if verb == "wait" else 0, orders)
        self.log(f"{report}: {' '.join(sorted(set(states)))}", errors)
        if verb == "silent":
            return True
        if verb == "lose":
            return self.connection.close()
        return self.send(200, whole)

    def log(self, report, errors):
        with open(folder / "log", "a") as file:
            file.write(report + "".join(f" WRONG {error}" for error in errors) + "\n")

    def send(self, status, body):
        self.send_response(status)
        self.send_header("Content-Type", "text/xml; charset=UTF-8")
        self.end_headers()
        self.wfile.write(body.encode())

    def log_message(self, *words):
        pass


context = ssl.SSLContext(ssl.PROTOCOL_TLS_SERVER)
context.load_cert_chain(sys.argv[2], sys.argv[3])
context.load_verify_locations(sys.argv[4])
context.verify_mode = ssl.CERT_REQUIRED
server = http.server.ThreadingHTTPServer(("127.0.0.1", 0), Agency)
server.socket = context.wrap_socket(server.socket, server_side=True)
threading.Thread(target=server.serve_forever, daemon=True).start()
print(server.server_address[1], flush=True)
sys.stdin.read()
os._exit(0)
