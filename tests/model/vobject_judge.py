# SPDX-FileCopyrightText: 2026 The Vexmarrow authors
# SPDX-License-Identifier: MIT
"""Has an independent parser judge a result: parsed(result) = replaced(parsed(input)).

It judges only lines that it reads correctly: lines of cards of 3.0 and 4.0, and of 2.1 without folds, in valid
UTF-8 or with a mark, that end in LF or CR LF. Files in which a line keeps its bytes although its text would
change must not be given to it.
"""

import io
import re

from vobject import base

from vcard_change import FIELDS, VALUES

CODED = re.compile("quoted-printable", re.IGNORECASE)
CODED_HEADER = re.compile(";(?:ENCODING=)?QUOTED-PRINTABLE(?=[;:])")
STRAY_SIGN = re.compile("=(?![0-9A-Fa-f]{2}|\n)|[ \t](?:\n|$)")
PICTURE = re.compile(r"(?:[\w-]+\.)?(?:PHOTO|LOGO|SOUND|KEY)[;:]", re.IGNORECASE)
BASE64_HEADER = re.compile(';(?:ENCODING=)?(?:B|BASE64|"B"|"BASE64")(?=[;:])', re.IGNORECASE)
# Line ends that the parser does not know, folds and soft breaks that it does not notice, and physical lines that
# continue a base64 value, which it takes for properties.
READ_OTHERWISE = re.compile("(?m)\r(?!\n)|^[ \t]+\r?$|=[ \t]+\r?$|^[A-Za-z0-9+/=]+[ \t]*\r?$")
EMPTY_LINE = re.compile("(?m)^[ \t]*\r?$")  # the parser drops these
FOLDED_VERSION = re.compile("(?im)^VERSION[:;].*\n[ \t]")
MARKS = [(b"\xff\xfe\0\0", "utf-32-le"), (b"\0\0\xfe\xff", "utf-32-be"), (b"\xff\xfe", "utf-16-le"),
         (b"\xfe\xff", "utf-16-be"), (b"\xef\xbb\xbf", "utf-8")]


def text_of(data):
    """The text of a file; None if the parser would read it wrongly."""
    mark, encoding = next((m for m in MARKS if data.startswith(m[0])), (b"", "utf-8"))
    try:
        text = data[len(mark):].decode(encoding)
    except UnicodeDecodeError:
        return None
    return None if READ_OTHERWISE.search(text) else text


def cards(text):
    """[(version, [logical line])] of cards without nested ones; None if there is anything else."""
    result, lines = [], None
    for line, _ in base.getLogicalLines(io.StringIO(text), allowQP=True):
        if CODED.search(line) and not CODED_HEADER.search(f"{line.partition(':')[0]}:"):
            return None
        frame = line.upper().rstrip(" \t")
        if frame == "BEGIN:VCARD":
            if lines is not None:
                return None
            lines = []
        elif lines is None:
            return None
        elif frame == "END:VCARD":
            versions = [v.partition(":")[2].strip() for v in lines if re.match("VERSION[:;]", v, re.IGNORECASE)]
            result.append((versions[0] if versions else "", lines))
            lines = None
        else:
            lines.append(line)
    return result if lines is None else None


def replaced(text, pairs, escapes):
    for find, replacement in pairs:
        if not find:
            continue
        result, at = "", 0
        taken = {m.start() + 1 for m in re.finditer(r"(?s)\\.", text)} if escapes else ()
        while at < len(text):
            if text.startswith(find, at) and at not in taken:
                result += replacement
                at += len(find)
            else:
                result += text[at]
                at += 1
        text = result
    return text


def parsed(line):
    """(header, name, parameters, group, value as it is written), or None."""
    try:
        name, params, value, group = base.parseLine(line)
    except base.ParseError:
        return None
    return line[:len(line) - len(value)], name, params, group, value


def decoded(line, value, text_is_marked):
    """The value of a line as text; None if the parser may read it wrongly."""
    header = line[:len(line) - len(value)]
    charset = re.search(";CHARSET=([^;:]*)", header, re.IGNORECASE)
    if not CODED.search(line):
        return value if charset is None or charset.group(1).upper() == "UTF-8" else None
    if not CODED_HEADER.search(header) or len(CODED.findall(line)) > 1 or STRAY_SIGN.search(value):
        return None
    if "ENCODING" in CODED_HEADER.sub("", header).upper() or (text_is_marked and re.search("[^\0-\x7f]", value)):
        return None
    if charset and charset.group(1).upper() not in ("UTF-8", "ISO-8859-1", "WINDOWS-1252", "KOI8-R"):
        return None
    try:
        return base.textLineToContentLine(line).value
    except (UnicodeDecodeError, LookupError):
        return None


def is_hidden(header, value):
    return bool(BASE64_HEADER.search(header) or re.match("data:[^,]*;base64,", value, re.IGNORECASE)
                or PICTURE.match(header) and re.match("[A-Za-z0-9+/=]{200}", re.sub("[ \t]", "", value)))


def fits(text, header):
    charset = re.search(";CHARSET=([^;:]*)", header, re.IGNORECASE)
    try:
        text.encode(charset.group(1) if charset else "utf-8")
        return True
    except (UnicodeEncodeError, LookupError):
        return False


def judge_line(version, before, after, part, pairs, marked):
    """What is wrong with a line, "" if nothing is; None if the parser cannot judge the line."""
    old = parsed(before)
    if old is None or before.upper().startswith("VERSION") or version == "2.1" and '"' in old[0]:
        return None
    text = decoded(before, old[4], marked)
    if text is None or after.count('"') != before.count('"'):  # the parser looks for quotes in values, too
        return None
    escapes, header, value = version != "2.1", old[0][:-1], text
    coded = bool(CODED.search(before))
    if part != VALUES:
        header = replaced(header, line_ends(pairs, False), escapes)
    if part != FIELDS and not is_hidden(old[0], old[4]):
        value = replaced(value, line_ends(pairs, coded), escapes)
    if not fits(value, old[0]) or not fits(header, ""):
        return None
    if header + value == old[0][:-1] + text:
        return "" if before == after else f"{before!r} becomes {after!r}"
    wanted, new = parsed(f"{header}:"), parsed(after)
    if wanted is None or wanted[4] or CODED.search(header) and not coded:
        return None
    if new is None:
        return f"{after!r} is not accepted"
    found = decoded(f"{header}:{new[4]}", new[4], marked)
    if found is None:
        return None
    is_right = new[1:4] == wanted[1:4] and found == value
    return "" if is_right else f"{before!r} becomes {after!r}, which says {found!r} and not {value!r}"


def moves_colon(part, pairs):
    return part != VALUES and any(":" in find + replacement for find, replacement in pairs)


def line_ends(pairs, coded):
    return [(find, re.sub("\r\n|\n|\r", "\r\n" if coded else r"\\n", replacement)) for find, replacement in pairs]


def judge(data, output, part, pairs):
    """How many lines the parser judged, how many of these had changed, and its complaints."""
    before, after = text_of(data), text_of(output)
    if before is None or after is None or moves_colon(part, pairs) or FOLDED_VERSION.search(before):
        return 0, 0, []
    if len(EMPTY_LINE.findall(before)) != len(EMPTY_LINE.findall(after)):
        return 0, 0, []
    old, new = cards(before), cards(after)
    if old is None or new is None or any(version == "2.1" for version, _ in old) and re.search("\n[ \t]", before):
        return 0, 0, []
    if [len(lines) for _, lines in old] != [len(lines) for _, lines in new]:
        return 0, 0, ["the parser finds other lines"]
    marked = data.startswith(tuple(mark for mark, _ in MARKS))
    verdicts = [(one != other, judge_line(version, one, other, part, pairs, marked))
                for (version, lines), (_, others) in zip(old, new) for one, other in zip(lines, others)]
    judged = [(changed, verdict) for changed, verdict in verdicts if verdict is not None]
    return len(judged), sum(changed for changed, _ in judged), [verdict for _, verdict in judged if verdict]
