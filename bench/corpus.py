# SPDX-FileCopyrightText: 2026 The Vexmarrow authors
# SPDX-License-Identifier: MIT
"""The files and the pairs that the benchmarks work on. They are the same in every run."""

import base64
import random

SEED = 2026
CODE_PAGE = "cp1252"
BLOCK = 65536  # characters of a piece, on which the program works at once

HALF = ("+49 (0)", "+49 ")  # in every other card, in one of its values
ALL = ("Deutschland", "Germany")  # in every card, twice
NONE = ("+49 (1)", "+49 ")  # in no card
HALF_FIELD = ("TYPE=OTHER", "TYPE=HOME")  # in every other card, in one of its fields

FIRST = ("Anna", "Björn", "Chloë", "Denis", "Élodie", "François", "Gudrun", "Håkon", "Inés",
         "Jürgen", "Karla", "Léa", "Márcia", "Niels", "Óscar", "Paul", "Renée", "Søren", "Tomás",
         "Ursula")
HEADS = ("Al", "Ber", "Cor", "Dün", "El", "Fahr", "Gries", "Hal", "Il", "Jung", "Klein", "Lin",
         "Mühl", "Nord", "Ober", "Pfar", "Quen", "Rös", "Sand", "Tann", "Unter", "Vor", "Wald",
         "Zier")
MIDDLES = ("ten", "den", "gar", "mers", "nach", "lo", "ris", "stein", "vel", "wen")
TAILS = ("berg", "dorf", "feld", "hausen", "heim", "hof", "ingen", "stätt", "tal", "weiler")
UNITS = ("Einkauf", "Vertrieb", "Büro", "Leitung")
TITLES = ("Geschäftsführer", "Buyer", "Secretary", "Directrice générale")
NOTES = ("Prefers to be called after lunch.", "Met at the fair in spring; sends the catalogue.",
         "Speaks Français et español.", "Invoices go to the head office.",
         "Deputy: see the list at reception.")


def make_names(rng, count):
    names = [head + middle + tail for head in HEADS for middle in MIDDLES for tail in TAILS]
    return rng.sample(names, count)


class Corpus:
    def __init__(self, cards, utf16):
        rng = random.Random(SEED)
        names = make_names(rng, 1000)
        self._companies = [name + " GmbH" for name in names[:200]]
        self._streets = [name + " Straße" for name in names[200:700]]
        self._towns = ["Bad " + name for name in names[700:]]
        # Each card has a company, two streets and two towns: five replacements.
        pairs = ([(a, a[:-5] + " AG") for a in self._companies] +
                 [(a, a[:-3] + "..") for a in self._streets] +
                 [(a, a[4:] + " (Kurort)") for a in self._towns])
        rng.shuffle(pairs)
        self.pairs = pairs
        self.cards = {}
        for number in range(cards):
            name = f"{number * 100 // cards:03}/contact-{number:05}.vcf"
            self.cards[name] = self._card(rng, number)
        texts = list(self.cards.values())
        self.utf16 = {f"{i * 20 // utf16:02}/wide-{i:05}.vcf":
                      b"\xff\xfe" + texts[i].decode(CODE_PAGE).encode("utf-16-le")
                      for i in range(utf16)}

    def _card(self, rng, number):
        first, last = rng.choice(FIRST), rng.choice(HEADS) + rng.choice(TAILS)
        company = rng.choice(self._companies)
        site = f"www.example{rng.randrange(1000):03}.com"

        def digits(count):
            return "".join(rng.choices("0123456789", k=count))

        lines = [
            "BEGIN:VCARD", "VERSION:3.0",
            f"N:{last};{first};;;", f"FN:{first} {last}",
            f"ORG:{company};{rng.choice(UNITS)}",
            f"TITLE:{rng.choice(TITLES)}",
            f"TEL;TYPE=WORK,VOICE:{HALF[0] if number % 2 else '+44 20'}{digits(3)} {digits(7)}",
            f"TEL;TYPE={'OTHER' if number // 2 % 2 else 'CELL'}:+33 1 {digits(8)}",
            f"EMAIL;TYPE=INTERNET:{last.lower()}.{digits(3)}@{site[4:]}",
        ]
        for kind in ("WORK", "HOME"):
            street, house = rng.choice(self._streets), digits(2)
            town, code = rng.choice(self._towns), digits(5)
            lines.append(f"ADR;TYPE={kind}:;;{street} {house};{town};;{code};Deutschland")
        lines += [
            f"URL:https://{site}/~{last.lower()}",
            f"BDAY:{rng.randrange(1940, 2005)}-{rng.randrange(1, 13):02}-{rng.randrange(1, 29):02}",
            f"NOTE:{rng.choice(NOTES)}\\n{rng.choice(NOTES)}",
            f"UID:{'-'.join(digits(8) for _ in range(3))}",
        ]
        text = "\r\n".join(lines).encode(CODE_PAGE, "replace")
        size = max(2048, int(rng.gauss(4096, 200)))
        photo = base64.b64encode(rng.randbytes((size - len(text) - 60) * 72 // 100))
        folded = b"\r\n ".join(photo[at:at + 74] for at in range(0, len(photo), 74))
        return text + b"\r\nPHOTO;ENCODING=b;TYPE=JPEG:" + folded + b"\r\nEND:VCARD\r\n"

    def sets(self, count):
        return self.pairs[:count]

    def big_file(self, size):
        """Cards one after another. Each block ends with a line that fills it up, so that nothing
        lies across the border of two pieces. There, the program by design finds nothing, but other
        tools do."""
        blocks, block = [], b""
        for card in self.cards.values():
            if len(block) + len(card) > BLOCK - 8:
                blocks.append(block + b"X-PAD:" + b"." * (BLOCK - len(block) - 8) + b"\r\n")
                block = b""
            block += card
        return (b"".join(blocks) * (size // (BLOCK * len(blocks)) + 1))[:size]


def cyrillic_file(size):
    """Lines of letters that have two bytes each in UTF-8. The lines fill each block exactly."""
    rng = random.Random(SEED)
    words = ["".join(chr(0x430 + rng.randrange(32)) for _ in range(7)) for _ in range(2000)]
    lines = [" ".join(rng.choices(words, k=16))[:126] + "\r\n" for _ in range(4096)]
    block = "".join(lines).encode("cp1251")
    return block * (size // len(block))


def cyrillic_pairs(count):
    """The first pair is found often, most of the others never."""
    def letters(number):
        return "".join(chr(0x430 + (number * 7 >> shift) % 32) for shift in (0, 3, 6, 9, 12))

    return [("\u043e\u043d", "\u043d")] + [(letters(i), letters(i)[:2]) for i in range(1, count)]


def in_code_page(pairs, page=CODE_PAGE):
    return [(find.encode(page), replace.encode(page)) for find, replace in pairs]


def replaced(data, pairs, page=CODE_PAGE):
    """The right result for a file, with the pairs applied one after another."""
    if data.startswith(b"\xff\xfe"):
        text = data.decode("utf-16-le")
        for find, replace in pairs:
            text = text.replace(find, replace)
        return text.encode("utf-16-le")
    for find, replace in in_code_page(pairs, page):
        data = data.replace(find, replace)
    return data


def replaced_in_part(data, pairs, part):
    """The same for a run over fields only (0) or values only (1), which keeps no more than the
    first two of the parts between a line's colons."""
    lines = []
    for line in data.removesuffix(b"\r\n").split(b"\r\n"):
        parts = line.split(b":")[:2]
        if len(parts) > 1:
            parts[part] = replaced(parts[part], pairs)
        lines.append(b":".join(parts) + b"\r\n")
    return b"".join(lines)
