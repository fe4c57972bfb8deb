#!/usr/bin/env python3
"""Looks at electronic invoices with other eyes than the program's.

    check_documents.py SCHEMAS FOLDER

Every .xml file of FOLDER must be valid by the official schemas in SCHEMAS (xmllint), be accepted by a38 of Debian,
and add up: the controls 00400 to 00445 of the exchange system are done here again, from their official wording, with
decimal numbers. Prints what is wrong; ends with 1 if anything is.
"""
import pathlib
import re
import shutil
import subprocess
import sys
import xml.etree.ElementTree as ElementTree
from decimal import ROUND_HALF_UP, Decimal

NAMESPACE = "{http://ivaservizi.agenziaentrate.gov.it/docs/xsd/fatture/v1.2}"
# Abolished in 2018: a customer without a recipient code needs no certified mail.
OUTDATED = "00426"
ACCEPTED_BY_A38 = """
import sys
from a38 import codec, fields, validation

# That of Debian 13 knows that there may be several withholdings, and asks their list for its value as if it were one.
class ListWithValue(list):
    def has_value(self):
        return any(part.has_value() for part in self)

cleaned = fields.ModelListField.clean_value
fields.ModelListField.clean_value = lambda *given: ListWithValue(cleaned(*given) or [])

for path in sys.stdin.read().splitlines():
    try:
        invoice = codec.XML().load(path)
        result = validation.Validation()
        invoice.validate(result)
        for told in result.errors + result.warnings:
            if told.code != "%s":
                print(f"{path}: a38: {told}")
    except Exception as failure:
        print(f"{path}: a38: {failure!r}")
print("done")
""" % OUTDATED


def in_batches(paths, size=500):
    for start in range(0, len(paths), size):
        yield [str(path) for path in paths[start:start + size]]


def by_schema(schema, paths):
    for batch in in_batches(paths):
        done = subprocess.run(["xmllint", "--nonet", "--noout", "--schema", schema, *batch], capture_output=True,
                              text=True, check=False)
        if done.returncode != 0:
            yield from (line for line in done.stderr.splitlines() if not line.endswith(" validates"))


def by_a38(paths):
    tool = shutil.which("a38tool")
    interpreter = pathlib.Path(tool).read_text("utf-8").splitlines()[0].removeprefix("#!").split()
    for batch in in_batches(paths):
        done = subprocess.run([*interpreter, "-c", ACCEPTED_BY_A38], input="\n".join(batch), capture_output=True,
                              text=True, check=False)
        lines = done.stdout.splitlines()
        if not lines or lines.pop() != "done":
            yield f"a38 ended with {done.returncode}: {done.stderr}"
        yield from lines


def number(element, name):
    found = element.find(name)
    return Decimal(0) if found is None else Decimal(found.text)


def text(element, name):
    return element.findtext(name, "")


def broken_rules(root):
    head = root.find("FatturaElettronicaHeader")
    body = root.find("FatturaElettronicaBody")
    sending = head.find("DatiTrasmissione")
    customer = head.find("CessionarioCommittente/DatiAnagrafici")
    general = body.find("DatiGenerali/DatiGeneraliDocumento")
    lines = body.findall("DatiBeniServizi/DettaglioLinee")
    funds = general.findall("DatiCassaPrevidenziale")
    summaries = body.findall("DatiBeniServizi/DatiRiepilogo")
    withholdings = general.findall("DatiRitenuta")
    parts = lines + funds

    for kind, elements, missing, too_much in (("line", lines, "00400", "00401"), ("fund", funds, "00413", "00414"),
                                              ("summary", summaries, "00429", "00430")):
        for element in elements:
            rate, nature = number(element, "AliquotaIVA"), element.find("Natura")
            if rate == 0 and nature is None:
                yield missing, f"{kind} without VAT and nature"
            if rate != 0 and nature is not None:
                yield too_much, f"{kind} with VAT and nature"
            if 0 < rate < 1:
                yield "00424", f"{kind} at {rate}"
            if text(element, "Natura") in ("N2", "N3", "N6") and text(general, "Data") >= "2021":
                yield "00445", text(element, "Natura")
    if not withholdings and any(line.find("Ritenuta") is not None for line in lines):
        yield "00411", "a line under withholding, and no DatiRitenuta"
    if not withholdings and any(fund.find("Ritenuta") is not None for fund in funds):
        yield "00415", "a fund under withholding, and no DatiRitenuta"
    if withholdings and not any(part.find("Ritenuta") is not None for part in parts):
        yield "-", "DatiRitenuta, and nothing under withholding"
    if customer.find("IdFiscaleIVA") is None and customer.find("CodiceFiscale") is None:
        yield "00417", "a customer with no code"
    for linked in body.findall("DatiGenerali/DatiFattureCollegate"):
        if text(general, "TipoDocumento") == "TD04" and text(linked, "Data") > text(general, "Data"):
            yield "00418", "older than the invoice it takes back"

    rates = {number(part, "AliquotaIVA") for part in parts}
    if len(summaries) < len(rates):
        yield "00419", f"{len(summaries)} summaries for {len(rates)} rates"
    for rate in rates - {number(summary, "AliquotaIVA") for summary in summaries}:
        yield "00443", f"no summary at {rate}"
    natures = {text(part, "Natura") for part in parts} - {""}
    for nature in natures - {text(summary, "Natura") for summary in summaries}:
        yield "00444", f"no summary of {nature}"
    for summary in summaries:
        if text(summary, "EsigibilitaIVA") == "S" and text(summary, "Natura").startswith("N6"):
            yield "00420", "split payment and reverse charge"
        tax = (number(summary, "ImponibileImporto") * number(summary, "AliquotaIVA") / 100).quantize(
            Decimal("0.01"), ROUND_HALF_UP)
        if number(summary, "Imposta") != tax:
            yield "00421", f"{text(summary, 'Imposta')} instead of {tax}"
    for rate in rates:
        taxable = sum(number(s, "ImponibileImporto") for s in summaries if number(s, "AliquotaIVA") == rate)
        added = (sum(number(line, "PrezzoTotale") for line in lines if number(line, "AliquotaIVA") == rate) +
                 sum(number(fund, "ImportoContributoCassa") for fund in funds if number(fund, "AliquotaIVA") == rate))
        if taxable != added:  # the system lets less than one euro pass
            yield "00422", f"{taxable} instead of {added} at {rate}"
    for line in lines:
        quantity = number(line, "Quantita") if line.find("Quantita") is not None else 1
        if number(line, "PrezzoTotale") != number(line, "PrezzoUnitario") * quantity:
            yield "00423", f"line {text(line, 'NumeroLinea')}"
    if not re.search(r"\d", text(general, "Numero")):
        yield "00425", text(general, "Numero")
    length = {"FPR12": 7, "FPA12": 6}[text(sending, "FormatoTrasmissione")]
    if len(text(sending, "CodiceDestinatario")) != length:
        yield "00427", text(sending, "CodiceDestinatario")
    if root.get("versione") != text(sending, "FormatoTrasmissione"):
        yield "00428", root.get("versione")

    total = sum(number(s, "ImponibileImporto") + number(s, "Imposta") for s in summaries)
    if number(general, "ImportoTotaleDocumento") != total:
        yield "-", f"total {text(general, 'ImportoTotaleDocumento')} instead of {total}"
    due = total - sum(number(withholding, "ImportoRitenuta") for withholding in withholdings)
    due -= sum(number(s, "Imposta") for s in summaries if text(s, "EsigibilitaIVA") == "S")
    for payment in body.findall("DatiPagamento/DettaglioPagamento"):
        if number(payment, "ImportoPagamento") != due:
            yield "-", f"to pay {text(payment, 'ImportoPagamento')} instead of {due}"
    if [text(line, "NumeroLinea") for line in lines] != [str(place + 1) for place in range(len(lines))]:
        yield "-", "lines are not numbered from 1"


def unfit_texts(data, root):
    if not data.startswith(b'<?xml version="1.0" encoding="UTF-8"?>'):
        yield "declaration or byte order mark"
    if root.tag != NAMESPACE + "FatturaElettronica" or any("}" in element.tag for element in root.iterfind(".//*")):
        yield "namespaces"
    for element in root.iter():
        if len(element):
            continue
        content = element.text or ""
        if not content.strip() or content != " ".join(content.split(" ")).strip() or "  " in content:
            yield f"{element.tag}: blanks in {content!r}"
        for character in content:
            if character < " " or "\x7f" <= character <= "\x9f" or character > "\xff":
                yield f"{element.tag}: {character!r}"


def main(schemas, folder):
    paths = sorted(pathlib.Path(folder).glob("*.xml"))
    problems = [] if paths else [f"no documents in {folder}"]
    for schema in ("FatturaPA_v1.2.2.xsd", "FatturaPA_v1.2.3.derived.xsd"):
        problems += by_schema(pathlib.Path(schemas) / schema, paths)
    problems += by_a38(paths)
    for path in paths:
        data = path.read_bytes()
        try:
            root = ElementTree.fromstring(data)
            problems += [f"{path}: {code} {what}" for code, what in broken_rules(root)]
            problems += [f"{path}: {what}" for what in unfit_texts(data, root)]
        except (ElementTree.ParseError, AttributeError, KeyError) as failure:
            problems.append(f"{path}: {failure!r}")
    print("\n".join(problems[:50]))
    print(f"{len(paths)} documents, {len(problems)} problems")
    return 1 if problems else 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
