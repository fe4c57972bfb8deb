#!/usr/bin/env python3
"""Draws the document templates that ship with the program.

Usage: make_templates.py [FOLDER]

Each template is drawn as a flat OpenDocument text and converted by LibreOffice to its format. The results are checked
in beside this script: run it again after a change here. Every template holds all 45 placeholders, each in one piece of
formatting, and looks complete where values are empty: what may be missing stands in a line or a column of its own.
"""

import pathlib
import subprocess
import sys
import tempfile
from xml.sax.saxutils import escape

NAMESPACES = " ".join(
    f'xmlns:{prefix}="urn:oasis:names:tc:opendocument:xmlns:{name}:1.0"'
    for prefix, name in {"office": "office", "style": "style", "text": "text", "table": "table",
                         "fo": "xsl-fo-compatible"}.items())

PAGE_WIDTH = 17.0  # cm between the margins


class Drawing:
    """A document in the making: content, and the styles that it has come to need."""

    def __init__(self, font, ink="#1f2933", accent="#1f2933", soft="#6b7785", size=10):
        self.font, self.ink, self.accent, self.soft, self.size = font, ink, accent, soft, size
        self.styles, self.body, self.named = [], [], {}

    def style(self, family, properties):
        key = (family, properties)
        if key not in self.named:
            self.named[key] = f"S{len(self.named)}"
            self.styles.append(f'<style:style style:name="{self.named[key]}" style:family="{family}">{properties}'
                               "</style:style>")
        return self.named[key]

    def p(self, text="", size=None, bold=False, italic=False, color=None, align="start", above=0, below=0, spacing=None,
          rule=None, stops=(), keep=False):
        """A paragraph. A list of texts becomes one paragraph with line breaks between them; `stops` are the places
        of its tabulators in cm. `keep` holds it on one page with the next."""
        size = size or self.size
        tabs = "".join(f'<style:tab-stop style:position="{stop}cm"/>' for stop in stops)
        paragraph = (f'<style:paragraph-properties fo:text-align="{align}" fo:margin-top="{above}cm" '
                     f'fo:margin-bottom="{below}cm"' + (f' fo:border-bottom="{rule}" fo:padding="0.05cm"' if rule else "")
                     + (' fo:keep-with-next="always"' if keep else "")
                     + f"><style:tab-stops>{tabs}</style:tab-stops></style:paragraph-properties>")
        characters = (f'<style:text-properties fo:font-family="{self.font}" fo:font-size="{size}pt" '
                      f'fo:color="{color or self.ink}" fo:language="it" fo:country="IT"'
                      + (' fo:font-weight="bold"' if bold else "") + (' fo:font-style="italic"' if italic else "")
                      + (f' fo:letter-spacing="{spacing}cm"' if spacing else "") + "/>")
        lines = text if isinstance(text, list) else [text]
        content = "<text:line-break/>".join(
            escape(line).replace("  ", " <text:s/>").replace("\t", "<text:tab/>") for line in lines)
        return f'<text:p text:style-name="{self.style("paragraph", paragraph + characters)}">{content}</text:p>'

    def cell(self, *paragraphs, fill=None, borders="", padding="0.08cm 0.12cm", align="top", span=1):
        top, side = padding.split()
        properties = (f'<style:table-cell-properties fo:padding-top="{top}" fo:padding-bottom="{top}" '
                      f'fo:padding-left="{side}" fo:padding-right="{side}" style:vertical-align="{align}"'
                      + (f' fo:background-color="{fill}"' if fill else "") + (f" {borders}" if borders else "") + "/>")
        spanned = f' table:number-columns-spanned="{span}"' if span > 1 else ""
        covered = "<table:covered-table-cell/>" * (span - 1)
        return (f'<table:table-cell table:style-name="{self.style("table-cell", properties)}"{spanned} '
                f'office:value-type="string">{"".join(paragraphs)}</table:table-cell>{covered}')

    def table(self, widths, rows, height=None, left=0.0):
        """A table; widths in cm, `left` its distance from the margin."""
        total = sum(widths)
        place = f'fo:margin-left="{left}cm" table:align="left"' if left else 'table:align="left"'
        name = self.style("table", f'<style:table-properties style:width="{total}cm" {place} '
                                   'table:border-model="collapsing"/>')
        columns = "".join(
            f'<table:table-column table:style-name="{self.style("table-column", column)}"/>'
            for column in (f'<style:table-column-properties style:column-width="{width}cm"/>' for width in widths))
        row = self.style("table-row", (f'<style:table-row-properties style:min-row-height="{height}cm" ' if height else
                                       "<style:table-row-properties ") + 'fo:keep-together="always"/>')
        self.body.append(f'<table:table table:style-name="{name}">{columns}' +
                         "".join(f'<table:table-row table:style-name="{row}">{"".join(cells)}</table:table-row>'
                                 for cells in rows) + "</table:table>")

    def add(self, *paragraphs):
        self.body.extend(paragraphs)

    def gap(self, points):
        self.add(self.p(size=points))

    def document(self):
        page = ('<style:page-layout style:name="page"><style:page-layout-properties fo:page-width="21cm" '
                'fo:page-height="29.7cm" fo:margin-top="1.6cm" fo:margin-bottom="1.3cm" fo:margin-left="2cm" '
                'fo:margin-right="2cm"/></style:page-layout>')
        return (f'<?xml version="1.0" encoding="UTF-8"?><office:document {NAMESPACES} office:version="1.3" '
                'office:mimetype="application/vnd.oasis.opendocument.text"><office:automatic-styles>'
                + page + "".join(self.styles) + "</office:automatic-styles><office:master-styles>"
                '<style:master-page style:name="Standard" style:page-layout-name="page"/></office:master-styles>'
                f'<office:body><office:text>{"".join(self.body)}</office:text></office:body></office:document>')


# What a template is made of

CONTACTS = "%e-mail%  %TelefonoDitta%  %FaxDitta%"  # where there is the whole width for them
FISCAL = "%CodiceFiscaleDitta%  %PIDitta%"  # where the line is centred

# A tabulator goes to the first stop behind what stands before it. So with a stop at the very edge, what follows an
# empty text starts there, and what follows a text that is there stands in its own column.
EDGE = 0.01


def after(d, left, right, column, size=None, **look):
    """Two texts on a line, the second in a column of its own, or at the edge where the first is empty."""
    farther = [round(column + 0.3 * step, 2) for step in range(1, 12)]
    return d.p(f"{left}\t{right}", size=size, stops=[EDGE, column, *farther], **look)


def phones(d, size=None, **look):
    return after(d, "%TelefonoDitta%", "%FaxDitta%", round(0.36 * (size or d.size), 2), size, **look)


def fiscal(d, size=None, **look):
    return after(d, "%CodiceFiscaleDitta%", "%PIDitta%", round(0.5 * (size or d.size), 2), size, **look)


def customer(d, **look):
    postal_code = 0.097 if d.font.startswith("Times") else 0.108  # five digits and a blank, in cm to the point
    return [d.p("%CogRagSoc% %NomeCliente%", bold=True, size=d.size + 1, **look),
            d.p("%IndirizzoCliente%", **look),
            after(d, "%CAPCliente%", "%CittàClt% %Pro%", round(postal_code * d.size, 2), **look),
            d.p("%CodiceFiscaleCliente%", size=d.size - 1, color=d.soft, above=0.08),
            d.p("%PICliente%", size=d.size - 1, color=d.soft)]


def services(d, head_fill=None, head_ink=None, line="0.5pt solid #c9d0d8", frame=None, height=0.95):
    """The five lines of services with their amounts."""
    side = f'fo:border-left="{frame}" fo:border-right="{frame}" ' if frame else ""
    top = f'fo:border-top="{frame}" ' if frame else ""
    head = dict(fill=head_fill, borders=f'{side}{top}fo:border-bottom="{frame or line}"', padding="0.14cm 0.15cm",
                align="middle")
    ink = head_ink or d.accent
    rows = [[d.cell(d.p("Descrizione", bold=True, color=ink), **head),
             d.cell(d.p("Importo", bold=True, color=ink, align="end"), **head)]]
    for i in range(1, 6):
        look = dict(borders=f'{side}fo:border-bottom="{frame if frame and i == 5 else line}"', align="middle",
                    padding="0.1cm 0.15cm")
        rows.append([d.cell(d.p(f"%Descrizione{i}%"), **look), d.cell(d.p(f"%Importo{i}%", align="end"), **look)])
    d.table([13.2, 3.8], rows, height)


LAST = "Totale dovuto"


def totals(d, total_fill=None, due_fill=None, due_ink=None, line="0.5pt solid #c9d0d8", strong=None, frame=None):
    """From the taxable amount to the amount due: words, rate, amount. A rate that is missing leaves a bare % in its
    column, and an amount that is missing an empty place. Words without a rate have its column too."""
    strong = strong or f"1pt solid {d.accent}"
    left, right = (f'fo:border-{side}="{frame}" ' if frame else "" for side in ("left", "right"))

    def row(words, rate, amount, bold=False, fill=None, ink=None, size=None, border=line, padding="0.08cm 0.15cm",
            above=None):
        top = f'fo:border-top="{above}" ' if above else ""

        def look(side):
            return dict(borders=f'{top}{side}fo:border-bottom="{border}"', fill=fill, align="middle", padding=padding)

        keep = words != LAST  # the page never breaks between the amounts
        cells = [d.cell(d.p(words, bold=bold, color=ink, size=size, keep=keep), span=1 if rate else 2, **look(left))]
        if rate:
            cells.append(d.cell(d.p(rate, color=ink or d.soft, align="center", keep=keep), **look("")))
        return [*cells, d.cell(d.p(amount, bold=bold, color=ink, align="end", size=size, keep=keep), **look(left + right))]

    d.table([8.0, 5.2, 3.8], [
        row("%Rivalsa%", "%AliquotaRivalsa%", "%ImportoRivalsa%", above=frame),
        row("Imponibile", "", "%Imponibile%"),
        row("IVA", "%IVA%", "%ImpostaIVA%"),
        row("%SpeseAnticipate% %ArtEs%", "", "%ImportoSpeseAnticipate%", border=strong),
        row("Totale comprensivo di IVA", "", "%TotaleFattura%", bold=True, fill=total_fill),
        row("%RitenutaAcconto%", "%PerRitenuta%", "%ImportoRitenutaAcconto%", border=strong),
        row(LAST, "", "%TotaleDovuto%", bold=True, fill=due_fill, ink=due_ink or d.accent, size=d.size + 2,
            border=frame or strong, padding="0.18cm 0.15cm")], 0.7)


def payment(d):
    """In a cell, so that it goes to the next page as one piece where services are long."""
    d.table([PAGE_WIDTH], [[d.cell(d.p("%Pagamento1%", bold=True, color=d.accent, above=0.1), d.p("%Pagamento2%"),
                                   padding="0cm 0cm")]])
    d.gap(1)  # a text ends in a paragraph: a large one could go to a page of its own


def number_and_date(d, align="start", size=None, **look):
    return [d.p("Fattura n. %NumeroFattura%/%Anno%", bold=True, size=size or d.size + 4, align=align, **look),
            d.p("del %Data%", align=align, **look)]


# The templates

def standard():
    """The master of new templates: plain and clear, letterhead at left, customer at right."""
    d = Drawing("Arial", accent="#1d4f91")
    d.table([10.2, 6.8], [[
        d.cell(d.p("%NomeDitta%", size=17, bold=True, color=d.accent),
               d.p("%DescrizioneAttività%", italic=True, color=d.soft, below=0.2),
               d.p("%IndirizzoDitta%", size=9), d.p("%e-mail%", size=9), phones(d, size=9), fiscal(d, size=9),
               padding="0cm 0cm"),
        d.cell(*number_and_date(d, align="end", color=d.accent), padding="0cm 0cm")]])
    d.add(d.p(size=4, rule=f"1.5pt solid {d.accent}"))
    d.gap(14)
    d.table([7.6], [[d.cell(d.p("Spett.le", size=9, color=d.soft, below=0.06), *customer(d), fill="#f2f5f9",
                            padding="0.25cm 0.35cm")]], left=9.4)
    d.gap(20)
    services(d, head_fill="#1d4f91", head_ink="#ffffff")
    d.gap(14)
    totals(d, due_fill="#e6edf6")
    d.gap(12)
    payment(d)
    return d


def classico():
    """The letter of a traditional practice: centred, serif, thin rules."""
    d = Drawing("Times New Roman", ink="#000000", accent="#000000", soft="#444444", size=10.5)
    d.add(d.p("%NomeDitta%", size=20, bold=True, align="center", spacing=0.04),
          d.p("%DescrizioneAttività%", italic=True, size=12, align="center", below=0.15),
          d.p("%IndirizzoDitta%", size=10, align="center"), d.p(CONTACTS, size=10, align="center"),
          d.p(FISCAL, size=10, align="center", below=0.1), d.p(size=3, rule="0.75pt double #000000"))
    d.gap(16)
    d.table([9.0, 8.0], [[
        d.cell(*number_and_date(d, size=14), padding="0cm 0cm"),
        d.cell(d.p("Spett.le", italic=True, below=0.08), *customer(d), padding="0cm 0cm")]])
    d.gap(18)
    services(d, line="0.5pt solid #999999", frame="0.75pt solid #000000", height=0.9)
    d.gap(12)
    totals(d, line="0.5pt solid #999999", strong="0.75pt solid #000000")
    d.gap(10)
    payment(d)
    return d


def moderno():
    """A band of colour across the head, the amount due in the same colour."""
    d = Drawing("Arial", accent="#0f766e", soft="#64748b")
    band = dict(fill="#0f766e", align="middle")
    d.table([10.5, 6.5], [[
        d.cell(d.p("%NomeDitta%", size=15, bold=True, color="#ffffff"),
               d.p("%DescrizioneAttività%", color="#cdeae6"), padding="0.45cm 0.5cm", **band),
        d.cell(*number_and_date(d, align="end", color="#ffffff"), padding="0.45cm 0.5cm", **band)]])
    d.gap(14)
    d.table([8.7, 8.3], [[
        d.cell(d.p("DA", size=8, bold=True, color=d.accent, spacing=0.05, below=0.1), d.p("%IndirizzoDitta%"),
               d.p("%e-mail%"), d.p("%CodiceFiscaleDitta%", size=9, color=d.soft),
               d.p("%PIDitta%", size=9, color=d.soft), phones(d, size=9, color=d.soft),
               padding="0cm 0.5cm"),
        d.cell(d.p("A", size=8, bold=True, color=d.accent, spacing=0.05, below=0.1), *customer(d), padding="0cm 0.5cm",
               borders=f'fo:border-left="1.5pt solid {d.accent}"')]])
    d.gap(20)
    services(d, head_fill="#e3f3f1", line="0.5pt solid #d5e3e1")
    d.gap(14)
    totals(d, line="0.5pt solid #d5e3e1", due_fill="#0f766e", due_ink="#ffffff")
    d.gap(16)
    payment(d)
    return d


def essenziale():
    """Hardly a line: much white, small grey words."""
    d = Drawing("Arial", ink="#222222", accent="#222222", soft="#8a8f98")
    d.add(d.p("%NomeDitta%", size=15, bold=True), d.p("%DescrizioneAttività%", color=d.soft))
    d.gap(26)
    small = dict(size=8, color=d.soft, below=0.1, spacing=0.03)
    d.table([5.4, 4.4, 7.2], [[
        d.cell(d.p("FATTURA", **small), d.p("%NumeroFattura%/%Anno%", size=16, bold=True), padding="0cm 0cm"),
        d.cell(d.p("DATA", **small), d.p("%Data%", size=16), padding="0cm 0cm"),
        d.cell(d.p("CLIENTE", **small), *customer(d), padding="0cm 0cm")]])
    d.gap(26)
    services(d, head_ink=d.soft, line="0.5pt solid #e3e5e8", height=1.0)
    d.gap(12)
    totals(d, line="0.5pt solid #ffffff", strong="0.5pt solid #b8bcc2")
    d.gap(12)
    payment(d)
    d.gap(10)
    d.add(d.p(size=3, rule="0.5pt solid #e3e5e8"), d.p("%IndirizzoDitta%", size=8, color=d.soft, above=0.1),
          d.p("%e-mail%", size=8, color=d.soft), phones(d, size=8, color=d.soft), fiscal(d, size=8, color=d.soft))
    return d


def elegante():
    """Serif and burgundy, for a practice that likes it solemn."""
    d = Drawing("Times New Roman", ink="#2b2024", accent="#7a1f35", soft="#7d6b70", size=10.5)
    d.table([17.0], [[d.cell(
        d.p("%NomeDitta%", size=22, color=d.accent, align="center", spacing=0.06),
        d.p("%DescrizioneAttività%", italic=True, size=12, align="center", color=d.soft),
        borders=f'fo:border-top="2pt solid {d.accent}" fo:border-bottom="0.5pt solid {d.accent}"',
        padding="0.3cm 0cm")]])
    d.add(d.p("%IndirizzoDitta%", size=9.5, align="center", color=d.soft, above=0.12),
          d.p(CONTACTS, size=9.5, align="center", color=d.soft), d.p(FISCAL, size=9.5, align="center", color=d.soft))
    d.gap(14)
    d.table([9.4, 7.6], [[
        d.cell(d.p("Fattura", size=26, italic=True, color=d.accent), d.p("n. %NumeroFattura%/%Anno%", bold=True, size=13),
               d.p("del %Data%"), padding="0cm 0cm"),
        d.cell(d.p("Spettabile", italic=True, color=d.soft, below=0.08), *customer(d), padding="0.05cm 0.4cm",
               borders=f'fo:border-left="0.5pt solid {d.accent}"')]])
    d.gap(16)
    services(d, line="0.5pt solid #d9c8cc", height=0.9)
    d.gap(12)
    totals(d, line="0.5pt solid #d9c8cc", due_fill="#f6eef0")
    d.gap(10)
    payment(d)
    return d


def studio():
    """Everything in frames, as on a form."""
    d = Drawing("Arial", accent="#33475b", soft="#5f6f7f", size=9.5)
    frame = "0.75pt solid #33475b"
    box = dict(borders=f'fo:border="{frame}"', padding="0.22cm 0.28cm")
    title = dict(size=7.5, color=d.soft, below=0.08)
    d.table([17.0], [[d.cell(
        d.p("%NomeDitta%", size=16, bold=True, color=d.accent), d.p("%DescrizioneAttività%", italic=True, below=0.12),
        d.p("%IndirizzoDitta%"), d.p("%e-mail%"), phones(d), fiscal(d), fill="#eef1f4", **box)]])
    d.gap(8)
    d.table([5.2, 3.6, 8.2], [[
        d.cell(d.p("Fattura n.", **title), d.p("%NumeroFattura%/%Anno%", bold=True, size=15, color=d.accent), **box),
        d.cell(d.p("Data", **title), d.p("%Data%", bold=True, size=13), **box),
        d.cell(d.p("Spett.le", **title), *customer(d), **box)]])
    d.gap(12)
    services(d, head_fill="#33475b", head_ink="#ffffff", frame=frame, height=1.0)
    d.gap(8)
    totals(d, total_fill="#eef1f4", frame=frame, strong=frame, due_fill="#eef1f4")
    d.gap(8)
    payment(d)
    return d


TEMPLATES = {"Standard.doc": standard, "Classico.rtf": classico, "Moderno.rtf": moderno, "Essenziale.rtf": essenziale,
             "Elegante.doc": elegante, "Studio.doc": studio}
FILTERS = {".rtf": "rtf:Rich Text Format", ".doc": "doc:MS Word 97"}


def main():
    folder = pathlib.Path(sys.argv[1] if len(sys.argv) > 1 else pathlib.Path(__file__).parent)
    with tempfile.TemporaryDirectory() as work:
        for name, draw in TEMPLATES.items():
            source = pathlib.Path(work) / (pathlib.Path(name).stem + ".fodt")
            source.write_text(draw().document(), encoding="utf-8")
            subprocess.run(["soffice", f"-env:UserInstallation=file://{work}/profile", "--headless", "--convert-to",
                            FILTERS[pathlib.Path(name).suffix], "--outdir", str(folder), str(source)], check=True,
                           stdout=subprocess.DEVNULL)


if __name__ == "__main__":
    main()
