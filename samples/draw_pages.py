#!/usr/bin/python3
"""Draws the sample pages beside this script: office papers as a scanner delivers them, all of them invented.

The same files come out every time. Wants Debian's python3-pil, fonts-liberation and fonts-urw-base35.
"""
import math
import random
from pathlib import Path

from PIL import Image, ImageChops, ImageDraw, ImageFilter, ImageFont

PAGES = Path(__file__).resolve().parent / "pages"
LIBERATION = "/usr/share/fonts/truetype/liberation/Liberation{}.ttf"
FONTS = {
    "sans": LIBERATION.format("Sans-Regular"),
    "bold": LIBERATION.format("Sans-Bold"),
    "serif": LIBERATION.format("Serif-Regular"),
    "mono": LIBERATION.format("Mono-Regular"),
    "hand": "/usr/share/fonts/opentype/urw-base35/Z003-MediumItalic.otf",
}
OVERSAMPLING = 2
INK = "#1c1c22"
PEN = "#22337a"


class Sheet:
    """A sheet of paper measured in millimetres, drawn finer than it is scanned."""

    def __init__(self, width=210, height=297, dpi=200, paper="#ffffff"):
        self.dpi = dpi
        self.scale = dpi * OVERSAMPLING / 25.4
        self.image = Image.new("RGB", (round(width * self.scale), round(height * self.scale)), paper)
        self.pen = ImageDraw.Draw(self.image)

    def at(self, *millimetres):
        return [value * self.scale for value in millimetres]

    def text(self, x, y, text, points=10, font="sans", fill=INK, anchor="la"):
        face = ImageFont.truetype(FONTS[font], round(points * self.dpi * OVERSAMPLING / 72),
                                  layout_engine=ImageFont.Layout.BASIC)
        self.pen.text(self.at(x, y), text, fill, face, anchor)

    def lines(self, x, y, lines, points=10, font="sans", step=None, fill=INK, anchor="la"):
        step = step or points * 0.5
        for line in lines:
            self.text(x, y, line, points, font, fill, anchor)
            y += step
        return y

    def rule(self, x, y, right, bottom=None, width=0.3, fill=INK):
        self.pen.line(self.at(x, y, right, y if bottom is None else bottom), fill, round(width * self.scale))

    def box(self, x, y, right, bottom, width=0.3, outline=INK, fill=None):
        self.pen.rectangle(self.at(x, y, right, bottom), fill, outline, max(1, round(width * self.scale)))

    def disc(self, x, y, radius, fill=None, outline=None, width=0.3):
        self.pen.ellipse(self.at(x - radius, y - radius, x + radius, y + radius), fill, outline,
                         round(width * self.scale))

    def area(self, points, fill):
        self.pen.polygon([value for point in points for value in self.at(*point)], fill)

    def curve(self, points, fill=PEN, width=0.5):
        self.pen.line([value for point in points for value in self.at(*point)], fill,
                      round(width * self.scale), "curve")

    def signature(self, x, y, seed, width=42):
        """A pen's quick loops, larger at the first letter; each seed is a hand of its own."""
        rnd = random.Random(seed)
        capital, small, pace, lean = 5 + 5 * rnd.random(), 1.4 + 1.6 * rnd.random(), rnd.random(), rnd.random()
        points, phase = [], 3 * rnd.random()
        for step in range(160):
            part = step / 159
            phase += 0.2 + 0.2 * pace + 0.1 * rnd.random()
            height = capital * math.exp(-7 * part) + small * (1 - 0.6 * part)
            points.append((x + width * part + (1 + 2 * lean) * math.sin(phase * (0.7 + 0.4 * pace)),
                           y - height * math.sin(phase)))
        self.curve(points)
        self.curve([(x + 4, y + 5), (x + width * 0.6, y + 3.6), (x + width, y + 4.2)], width=0.4)

    def stamp(self, x, y, lines, angle=-8, colour="#2b4fa0"):
        """A framed rubber stamp, set down a little askew."""
        width, height = round(58 * self.scale), round((7 + 5 * len(lines)) * self.scale)
        mask = Image.new("L", (width, height), 0)
        pen = ImageDraw.Draw(mask)
        pen.rectangle((0, 0, width - 1, height - 1), 0, 230, round(0.6 * self.scale))
        for row, line in enumerate(lines):
            face = ImageFont.truetype(FONTS["bold" if row == 0 else "sans"],
                                      round((11 if row == 0 else 9) * self.dpi * OVERSAMPLING / 72),
                                      layout_engine=ImageFont.Layout.BASIC)
            pen.text((width / 2, (5.5 + 5 * row) * self.scale), line, 230, face, "mm")
        mask = mask.rotate(angle, Image.Resampling.BICUBIC, expand=True)
        self.image.paste(Image.new("RGB", mask.size, colour), [round(value) for value in self.at(x, y)], mask)


def noise(size, seed, strength, grain=1):
    """Grey noise around 128, `grain` pixels coarse."""
    small = [max(1, math.ceil(side / grain)) for side in size]
    raw = Image.frombytes("L", small, random.Random(seed).randbytes(small[0] * small[1]))
    return raw.point(lambda value: 128 + (value - 128) * strength // 128).resize(size, Image.Resampling.BILINEAR)


def grained(page, seed, strength, grain=1, brightening=0):
    """The page, grey or in colours, with grey noise in it."""
    speckle = noise(page.size, seed, strength, grain)
    if page.mode == "RGB":
        speckle = Image.merge("RGB", (speckle, speckle, speckle))
    return ImageChops.add(page, speckle, 1, brightening - 128)


def scan(sheet, seed, angle, mode, grain=1.0, strength=26, dust=14):
    """What a scanner makes of the sheet: askew, a little soft, noisy in the ink, dust on the glass."""
    page = sheet.image.rotate(angle, Image.Resampling.BICUBIC, fillcolor=sheet.image.getpixel((3, 3)))
    page = page.resize([side // OVERSAMPLING for side in page.size], Image.Resampling.LANCZOS)
    page = page.filter(ImageFilter.GaussianBlur(0.6))
    rnd = random.Random(seed)
    pen = ImageDraw.Draw(page)
    for _ in range(dust):
        x, y, radius = rnd.random() * page.width, rnd.random() * page.height, rnd.random() * sheet.dpi / 130
        pen.ellipse((x - radius, y - radius, x + radius, y + radius), "#6a6660")
    if mode == "1":
        # The added noise frays the edges of the ink and leaves the white alone.
        frayed = ImageChops.add(page.convert("L"), noise(page.size, seed, 40), 1, -128)
        return frayed.point(lambda value: 255 if value > 140 else 0).convert("1", dither=Image.Dither.NONE)
    # Scanners set their white point below the paper's, which keeps the background clean.
    return grained(page.convert(mode), seed, strength, grain, 24)


def letterhead(sheet, colour=INK):
    sheet.disc(27, 26, 7, colour)
    sheet.area([(27, 20), (31, 28), (23, 28)], "#ffffff")
    sheet.rule(27, 26, 27, 31.5, 0.9, "#ffffff")
    sheet.text(38, 18, "Smrček & dcera", 18, "bold", colour)
    sheet.text(38, 27, "papírnictví a kancelářské potřeby · Nádražní 12 · 999 01 Horní Lhotka", 8.5)
    sheet.rule(18, 36, 192, width=0.5, fill=colour)


def table(sheet, x, y, columns, rows, step=7.2, header=True, points=9.5):
    """Columns are (width, right-aligned); returns the y below the table."""
    right = x + sum(width for width, _ in columns)
    if header:
        sheet.box(x, y, right, y + step, fill="#d8d8d8")
    for row in rows:
        left = x
        for (width, number), cell in zip(columns, row):
            font = "bold" if header and row is rows[0] else "sans"
            sheet.text(left + (width - 2 if number else 2), y + step / 2, cell, points, font,
                       anchor="rm" if number else "lm")
            left += width
        sheet.rule(x, y + step, right, width=0.2)
        y += step
    return y


INVOICE_COLUMNS = ((12, True), (82, False), (18, True), (18, False), (22, True), (24, True))
GOODS = (
    ("Papír kancelářský A4, 80 g, 500 listů", "25", "balík", 109.00),
    ("Obálka C5 bílá, samolepicí", "500", "ks", 1.15),
    ("Pořadač pákový 75 mm, modrý", "40", "ks", 62.50),
    ("Desky s chlopněmi A4, zelené", "30", "ks", 24.90),
    ("Kuličkové pero, modrá náplň", "120", "ks", 7.90),
    ("Zvýrazňovač žlutý", "36", "ks", 15.40),
    ("Sešívačka na 30 listů", "6", "ks", 189.00),
    ("Spony do sešívačky 24/6, 1 000 ks", "20", "bal.", 12.30),
    ("Razítková barva černá, 30 ml", "4", "ks", 71.00),
    ("Lepicí páska 19 mm × 33 m", "48", "ks", 11.20),
    ("Kalkulačka stolní, 12 míst", "3", "ks", 349.00),
    ("Tabule korková 60 × 90 cm", "2", "ks", 498.00),
    ("Rychlouzavírací sáčky 12 × 17 cm", "300", "ks", 0.85),
    ("Kniha příchozí pošty A4", "5", "ks", 84.00),
    ("Štítky samolepicí 70 × 36 mm", "10", "bal.", 139.00),
)


def crowns(amount):
    return f"{amount:,.2f}".replace(",", "\u00a0").replace(".", ",")


def invoice_rows(first, last):
    rows = []
    for number, (name, count, unit, price) in enumerate(GOODS, 1):
        if first <= number <= last:
            rows.append((f"{number}.", name, count, unit, crowns(price), crowns(price * int(count))))
    return rows


def invoice_first():
    sheet = Sheet()
    letterhead(sheet)
    sheet.text(192, 44, "Faktura č. 2024-0117", 16, "bold", anchor="ra")
    sheet.text(18, 56, "Dodavatel", 9, "bold")
    sheet.lines(18, 62, ("Smrček & dcera, v. o. s.", "Nádražní 12", "999 01 Horní Lhotka", "IČO 000 00 000"))
    sheet.box(104, 53, 192, 86, 0.4)
    sheet.text(108, 56, "Odběratel", 9, "bold")
    sheet.lines(108, 62, ("Obecní úřad Dolní Lhotka", "Žižkovo náměstí 3", "999 02 Dolní Lhotka", "IČO 000 00 001"))
    dates = (("Datum vystavení", "14. 3. 2024"), ("Datum splatnosti", "28. 3. 2024"), ("Variabilní symbol", "20240117"))
    for row, (name, value) in enumerate(dates):
        sheet.text(18, 94 + 6 * row, name, 9.5)
        sheet.text(92, 94 + 6 * row, value, 9.5, "bold", anchor="ra")
    head = ("č.", "Zboží", "množství", "j.", "cena Kč", "celkem Kč")
    y = table(sheet, 18, 118, INVOICE_COLUMNS, [head, *invoice_rows(1, 15)])
    sheet.text(192, y + 6, "pokračuje na straně 2", 9, anchor="ra")
    sheet.text(105, 284, "strana 1 / 2", 8.5, anchor="ma")
    return sheet


def invoice_second():
    sheet = Sheet()
    sheet.text(18, 18, "Faktura č. 2024-0117", 11, "bold")
    sheet.text(192, 18, "Smrček & dcera, v. o. s.", 10, anchor="ra")
    sheet.rule(18, 26, 192, width=0.5)
    total = sum(price * int(count) for _, count, _, price in GOODS)
    rows = (("Základ daně 21 %", crowns(total)), ("DPH 21 %", crowns(total * 0.21)), ("Zaokrouhlení", "0,00"))
    y = table(sheet, 102, 36, ((54, False), (36, True)), rows, header=False)
    sheet.box(102, y + 2, 192, y + 13, 0.6, fill="#d8d8d8")
    sheet.text(105, y + 7.5, "K úhradě Kč", 12, "bold", anchor="lm")
    sheet.text(189, y + 7.5, crowns(total * 1.21), 13, "bold", anchor="rm")
    sheet.lines(18, y + 26, ("Zboží zůstává až do úplného zaplacení majetkem dodavatele.",
                             "Reklamace přijímáme do čtrnácti dnů od převzetí.",
                             "Děkujeme za Váš nákup a těšíme se na další objednávku."), 10, "serif")
    sheet.stamp(112, y + 46, ("Smrček & dcera", "Horní Lhotka", "tel. 555 000 117"))
    sheet.signature(124, y + 78, 4)
    sheet.rule(112, y + 86, 184, width=0.2)
    sheet.text(148, y + 88, "razítko a podpis", 8.5, anchor="ma")
    sheet.text(105, 284, "strana 2 / 2", 8.5, anchor="ma")
    return sheet


def letter():
    sheet = Sheet(dpi=100)
    letterhead(sheet, "#1d5a3c")
    sheet.lines(112, 52, ("Městská knihovna", "paní Zdeňka Říhová", "Školní 5", "999 03 Kamenný Újezdec"), 11, "serif")
    sheet.text(18, 90, "V Horní Lhotce dne 2. května 2024", 11, "serif")
    sheet.text(18, 104, "Nabídka papíru a obalů na druhé pololetí", 12, "bold")
    body = (
        "Vážená paní Říhová,", "",
        "děkujeme za Váš dopis z 22. dubna. Rádi Vám nabídneme archivní krabice,",
        "nekyselý papír i obálky v množství, o které jste žádala. Ceny platí do konce",
        "září a zahrnují dopravu přímo do knihovny.", "",
        "Příliš žluťoučký kůň úpěl ďábelské ódy – touto větou jsme na vzorku ověřili,",
        "že nový tiskový papír dobře přijímá i drobné písmo s háčky a čárkami. Vzorek",
        "přikládáme; zkuste jej, prosím, i ve svém stroji.", "",
        "Pokud Vám vyhovuje termín dodání mezi 10. a 14. červnem, stačí krátká zpráva",
        "nebo telefonát. Fakturu vystavíme až po převzetí celé zásilky.", "",
        "S pozdravem a přáním pěkného jara",
    )
    y = sheet.lines(18, 116, body, 11, "serif", 6.2)
    sheet.signature(20, y + 16, 9)
    sheet.lines(18, y + 26, ("Vendula Smrčková", "obchodní oddělení"), 11, "serif", 5.5)
    sheet.text(18, 270, "Příloha: vzorek papíru, ceník", 9, "serif")
    return sheet


def form():
    sheet = Sheet()
    sheet.box(14, 12, 196, 285, 0.6)
    sheet.text(105, 19, "ŽÁDOST O VYPŮJČENÍ SPISU", 16, "bold", anchor="ma")
    sheet.text(105, 28, "vyplňte hůlkovým písmem, hodící se zaškrtněte", 9, anchor="ma")
    fields = (("Příjmení a jméno", "Dvořáková Jiřina"), ("Oddělení", "stavební úřad"), ("Číslo spisu", "SÚ 417/2019"),
              ("Počet listů", "86"), ("Datum výpůjčky", "17. 6. 2024"), ("Vrátit do", "1. 7. 2024"))
    y = 42
    for name, value in fields:
        sheet.box(20, y, 190, y + 14, 0.25)
        sheet.rule(74, y, 74, y + 14, 0.25)
        sheet.text(23, y + 7, name, 10, "bold", anchor="lm")
        sheet.text(79, y + 7, value, 17, "hand", PEN, "lm")
        y += 14
    sheet.text(20, y + 10, "Účel výpůjčky", 10, "bold")
    for row, (name, ticked) in enumerate((("nahlédnutí v kanceláři", False), ("pořízení kopií", True),
                                          ("úřední jednání mimo budovu", False), ("jiný (uveďte)", False))):
        top = y + 18 + 9 * row
        sheet.box(22, top, 27, top + 5, 0.35)
        sheet.text(31, top + 2.5, name, 10, anchor="lm")
        if ticked:
            sheet.curve([(22.5, top + 2), (24.3, top + 4.6), (29, top - 2.5)], width=0.7)
    y += 58
    sheet.text(20, y, "Poznámka", 10, "bold")
    for row, text in enumerate(("Prosím o kopie situačního výkresu", "a stavebního povolení, listy 12–15.", "", "")):
        sheet.rule(20, y + 15 + 10 * row, 190, width=0.15)
        sheet.text(23, y + 14 + 10 * row, text, 16, "hand", PEN, "ls")
    sheet.signature(124, 258, 23, 46)
    for left, right, text in ((24, 84, "převzal (archiv)"), (116, 182, "podpis žadatele")):
        sheet.rule(left, 266, right, width=0.25)
        sheet.text((left + right) / 2, 268, text, 8.5, anchor="ma")
    sheet.stamp(22, 240, ("Spisovna", "18. 06. 2024"), 5)
    return sheet


def receipt():
    sheet = Sheet(74, 150, 85)
    centre = 37
    sheet.text(centre, 7, "ŽELEZÁŘSTVÍ U LÍPY", 11, "bold", anchor="ma")
    sheet.lines(centre, 14, ("Lipová 8, 999 04 Nová Ves", "IČO 000 00 002"), 8, "mono", anchor="ma")
    rows = (("Vruty 4×40, 100 ks", "89,00"), ("Hmoždinky 8 mm", "45,00"), ("Štětec plochý 2\"", "62,00"),
            ("Barva bílá 0,75 l", "219,00"), ("Smirkový papír 3×", "27,00"), ("Lepidlo na dřevo", "96,00"))
    y = 30
    for name, price in rows:
        sheet.text(6, y, name, 8, "mono")
        sheet.text(68, y, price, 8, "mono", anchor="ra")
        y += 6.5
    sheet.rule(6, y + 1, 68, width=0.4)
    sheet.text(6, y + 5, "CELKEM Kč", 11, "bold")
    sheet.text(68, y + 5, "538,00", 11, "bold", anchor="ra")
    sheet.lines(6, y + 16, ("z toho DPH 21 %     93,37", "hotově             600,00", "vráceno             62,00"), 8, "mono", 5)
    rnd = random.Random(5)
    x = 12.0
    while x < 62:
        width = rnd.choice((0.5, 0.5, 1.0, 1.5))
        sheet.box(x, 116, x + width, 130, 0.1, INK, INK)
        x += width + rnd.choice((0.6, 0.6, 1.2))
    sheet.lines(centre, 133, ("29. 05. 2024  16:42", "Děkujeme, přijďte zas!"), 8, "mono", anchor="ma")
    return sheet


def album():
    """A page of an album: a photograph of a hillside, glued on, with a caption by hand."""
    sheet = Sheet(210, 148, 120, "#efe6d2")
    left, top, right, bottom = 35, 14, 175, 118
    sheet.box(left + 1.5, top + 1.5, right + 1.5, bottom + 1.5, 0.1, "#c9bfa8", "#c9bfa8")
    sheet.box(left, top, right, bottom, 0.1, "#fbfaf5", "#fbfaf5")
    left, top, right, bottom = left + 4, top + 4, right - 4, bottom - 4
    rows = 160
    for row in range(rows):
        part = row / rows
        y = top + (bottom - top) * part
        sheet.box(left, y, right, y + (bottom - top) / rows, 0.1, *2 * [
            tuple(round(a + (b - a) * part) for a, b in zip((96, 148, 205), (238, 226, 198)))])
    sheet.disc(148, 34, 7, "#fff3c4")
    rnd = random.Random(31)
    for hill, (base, height, colour) in enumerate(((66, 14, "#93a9b4"), (76, 11, "#6f9180"), (88, 9, "#557a4e"),
                                                   (100, 6, "#3f6137"))):
        ridge = [(left, bottom)]
        for step in range(67):
            x = left + (right - left) * step / 66
            ridge.append((x, base - height * (math.sin(x / (13 - hill * 2) + hill * 2) * 0.6
                                              + math.sin(x / 5.3 + hill) * 0.25 + rnd.random() * 0.08)))
        ridge.append((right, bottom))
        sheet.area(ridge, colour)
    sheet.box(88, 84, 104, 95, 0.1, "#e9dcc0", "#e9dcc0")
    sheet.area([(86, 84), (96, 75.5), (106, 84)], "#a2452f")
    for x, y, width, height in ((91, 86, 3, 3.5), (98, 86, 3, 3.5), (94.5, 90, 3, 5)):
        sheet.box(x, y, x + width, y + height, 0.1, "#5b4632", "#5b4632")
    for _ in range(26):
        x, y = left + 3 + rnd.random() * (right - left - 6), 96 + rnd.random() * 15
        size = 2.2 + rnd.random() * 2.6
        if abs(x - 96) > 12:
            sheet.area([(x - size, y), (x, y - 3 * size), (x + size, y)],
                       rnd.choice(("#2c4a2a", "#355a31", "#27422a")))
    sheet.text(105, 130, "Chalupa pod Ježatým vrchem, září 1987", 17, "hand", "#4a3a2c", "mm")
    return sheet


def report():
    sheet = Sheet(dpi=110)
    sheet.text(18, 18, "Spotřeba papíru v roce 2023", 17, "bold", "#1f4e79")
    sheet.text(18, 28, "Čtvrtletní přehled podle oddělení, v balících po 500 listech", 10)
    values = (("účtárna", (62, 58, 41, 77)), ("podatelna", (48, 44, 39, 52)), ("stavební úřad", (35, 47, 55, 38)),
              ("matrika", (12, 15, 11, 14)))
    colours = ("#1f4e79", "#4f9bd9", "#f0a431", "#6aa84f")
    for mark in range(0, 101, 20):
        y = 140 - mark
        sheet.rule(30, y, 190, width=0.2, fill="#b8c0c8")
        sheet.text(27, y, str(mark), 9, anchor="rm")
    for group in range(4):
        for bar, (_, counts) in enumerate(values):
            x = 36 + 39 * group + 7.5 * bar
            sheet.box(x, 140 - counts[group], x + 6, 140, 0.1, colours[bar], colours[bar])
        sheet.text(50 + 39 * group, 144, f"{group + 1}. čtvrtletí", 9.5, anchor="ma")
    sheet.rule(30, 140, 190, width=0.5)
    for bar, (name, _) in enumerate(values):
        sheet.box(32 + 40 * bar, 154, 36 + 40 * bar, 158, 0.1, colours[bar], colours[bar])
        sheet.text(38 + 40 * bar, 156, name, 9.5, anchor="lm")
    rows = [("Oddělení", "I.", "II.", "III.", "IV.", "celkem")]
    rows += [(name, *map(str, counts), str(sum(counts))) for name, counts in values]
    y = table(sheet, 18, 172, ((64, False), *4 * ((22, True),), (22, True)), rows, 8)
    sheet.lines(18, y + 10, ("Nejvíce papíru spotřebovala účtárna, a to kvůli roční závěrce ve IV. čtvrtletí.",
                             "Oddělení, která přešla na elektronický oběh, ušetřila v průměru 18 %."), 10, "serif")
    sheet.text(105, 284, "strana 1 / 1", 8.5, anchor="ma")
    return sheet


def memo():
    sheet = Sheet(148, 105, 120, "#fdfbf3")
    for row in range(9):
        sheet.rule(0, 24 + 9 * row, 148, width=0.25, fill="#8fa9c9")
    sheet.rule(20, 0, 20, 105, 0.3, "#d07070")
    notes = ("Zavolat do tiskárny – do pátku!", "1. vizitky pro nové kolegy (2 × 100)", "2. hlavičkový papír, vzorek B",
             "3. zeptat se na slevu za větší odběr", "", "Klíče od archivu má pan Kříž.", "", "               M.")
    for row, line in enumerate(notes):
        sheet.text(24, 23 + 9 * row, line, 17, "hand", PEN, "ls")
    sheet.curve([(24, 25.5), (50, 25), (86, 25.8)], width=0.5)
    return sheet


def delivery_note():
    sheet = Sheet()
    letterhead(sheet)
    sheet.text(192, 44, "Dodací list č. D-0117", 16, "bold", anchor="ra")
    sheet.lines(18, 58, ("Příjemce:", "Obecní úřad Dolní Lhotka", "Žižkovo náměstí 3, 999 02 Dolní Lhotka"), 10)
    rows = [("č.", "Zboží", "množství", "j.")]
    rows += [(f"{number}.", name, count, unit) for number, (name, count, unit, _) in enumerate(GOODS[:9], 1)]
    y = table(sheet, 18, 82, ((12, True), (112, False), (26, True), (24, False)), rows, 8)
    for row in range(9):
        top = 92 + 8 * row
        sheet.curve([(184, top), (186, top + 3), (190, top - 3)], width=0.6)
    sheet.text(22, y + 16, "1 krabice poškozená, obsah v pořádku", 17, "hand", PEN, "lm")
    sheet.signature(28, y + 42, 41, 48)
    sheet.rule(22, y + 50, 88, width=0.25)
    sheet.text(55, y + 52, "převzal, datum", 8.5, anchor="ma")
    sheet.text(92, y + 44, "15. 3. 2024", 16, "hand", PEN, "lm")
    return sheet


def sketch():
    """A floor plan on squared paper."""
    sheet = Sheet(210, 148, 150)
    for x in range(0, 211, 5):
        sheet.rule(x, 0, x, 148, 0.15)
    for y in range(0, 149, 5):
        sheet.rule(0, y, 210, width=0.15)
    for wall in ((30, 25, 180, 25), (180, 25, 180, 115), (180, 115, 30, 115), (30, 115, 30, 25), (110, 25, 110, 75),
                 (30, 75, 90, 75), (125, 75, 180, 75)):
        sheet.rule(*wall[:3], wall[3], 1.2)
    for x, y, text in ((70, 50, "archiv"), (145, 50, "kancelář"), (105, 97, "chodba a výdej spisů")):
        width = 2.1 * len(text)
        sheet.box(x - width, y - 5, x + width, y + 5, 0.1, "#ffffff", "#ffffff")
        sheet.text(x, y, text, 18, "hand", INK, "mm")
    for shelf in range(4):
        sheet.box(34 + 17 * shelf, 29, 46 + 17 * shelf, 35, 0.4, INK, "#ffffff")
    sheet.text(180, 128, "1 čtvereček = 25 cm", 14, "hand", INK, "rm")
    return sheet


def save(name, image, dpi, **options):
    image.save(PAGES / name, dpi=(dpi, dpi), **options)


def main():
    g4 = {"compression": "group4"}
    PAGES.mkdir(exist_ok=True)
    save("Page 1.tif", scan(invoice_first(), 1, 0.4, "1"), 200, **g4)
    save("Page 2.tif", scan(invoice_second(), 2, -0.6, "1"), 200, **g4)
    save("Page 3.tif", scan(letter(), 3, 0.3, "L"), 100, compression="tiff_lzw")
    save("Page 4.tif", scan(form(), 4, -0.3, "1"), 200, **g4)
    save("Page 5.tif", scan(receipt(), 5, 0.9, "L"), 85)
    save("Page 6.jpg", scan(album(), 6, 0.5, "RGB", 1.3, 20), 120, quality=72)
    save("Page 7.png", scan(report(), 7, 0, "RGB", strength=10, dust=0).quantize(64, dither=Image.Dither.NONE), 110,
         optimize=True)
    save("Page 8.jpg", scan(memo(), 8, -0.8, "RGB", 1.5, 20), 120, quality=65)
    save("Page 9.tif", scan(delivery_note(), 9, 0.7, "1"), 200, **g4)
    save("Page 10.png", scan(sketch(), 10, -0.4, "1"), 150, optimize=True)


if __name__ == "__main__":
    main()
