"""Reads a site folder by the rules of docs/site-files.md, independently of the importer and of what makes the demo sites."""

import datetime
import math
import re
from collections import namedtuple

TIME_TYPES = "01234578"
DATABASE, CONSTANTS, OCCURRENCE = 38, (4, 34), 31
AGGREGATIONS = ("average", "sum", "minimum", "maximum")
UNIT_SECONDS = {"s": 1, "m": 60, "h": 3600, "d": 86400}
DAY = 86400
EPOCH = datetime.datetime(1899, 12, 30)
FILES = ("site.csv", "units.csv", "monitor_codes.csv", "parameter_codes.csv", "parameters.csv", "special_values.csv",
         "relationships.csv", "occurrences.csv")
MOST_INTERVALS = 2_000_000
TYPE, SECONDS, TAG, LIMIT = -3, -13, -21, 1003  # special values of an occurrence parameter

NUMBER = re.compile(r"[+-]?(\d+\.?\d*|\.\d+)([eE][+-]?\d+)?", re.ASCII)
LIKE_A_NUMBER = re.compile(r"[+-]?\.?\d", re.ASCII)
INTEGER = re.compile(r"\d+", re.ASCII)
SIGNED_INTEGER = re.compile(r"-?\d+", re.ASCII)
PID_FORMS = (re.compile(r"\d{1,2}-\d{3}-\d-\d{2}-\d{2}", re.ASCII), re.compile(r"\d{9,10}", re.ASCII))
TIME = re.compile(r"(\d{4})-(\d\d)-(\d\d) (\d\d):(\d\d)(?::(\d\d))?", re.ASCII)
FORMULA_TOKEN = re.compile(r"\s*(\[[^\]]*\]|(?:\d+\.?\d*|\.\d+)(?:[eE][+-]?\d+)?|[-+*/()])", re.ASCII)

Parameter = namedtuple("Parameter", "pid name description units interval io_type value aggregation formula uses roll_up type line")
Value = namedtuple("Value", "time value mc")
Interval = namedtuple("Interval", "seconds months")
Excursion = namedtuple("Excursion", "pid category reason action excludable limit limit_pid")
Downtime = namedtuple("Downtime", "pid category reason action excludable")


class Refused(Exception):
    """A broken rule: file (relative path), line (1 is the header) and reason."""

    def __init__(self, file, line, reason):
        super().__init__(f"{file}:{line}: {reason}")
        self.file, self.line, self.reason = file, line, reason


def split_line(text):
    """Fields of one CSV line; ValueError says what is wrong with it."""
    fields, at = [], 0
    while True:
        if text[at:at + 1] == '"':
            field, at = "", at + 1
            while True:
                end = text.find('"', at)
                if end < 0:
                    raise ValueError("quotation mark not closed")
                field += text[at:end]
                if text[end + 1:end + 2] != '"':
                    break
                field, at = field + '"', end + 2
            at = end + 1
            if at < len(text) and text[at] != ",":
                raise ValueError("characters after a closing quotation mark")
        else:
            end = text.find(",", at)
            end = len(text) if end < 0 else end
            field, at = text[at:end], end
            if '"' in field:
                raise ValueError("quotation mark inside a field without quotation marks")
        fields.append(field)
        if at >= len(text):
            return fields
        at += 1


def rows(folder, file):
    """Yields (line number, fields), the header first."""
    try:
        text = (folder / file).read_bytes().decode("utf-8-sig")
    except UnicodeDecodeError as error:
        line = (folder / file).read_bytes()[:error.start].count(b"\n") + 1
        raise Refused(file, line, "not UTF-8") from None
    lines = text.split("\n")
    if lines[-1] == "":
        lines.pop()
    if not lines:
        raise Refused(file, 1, "no header")
    width = None
    for number, line in enumerate(lines, 1):
        line = line.removesuffix("\r")
        if line == "":
            raise Refused(file, number, "empty line")
        if any(ord(c) < 32 or ord(c) == 127 for c in line):
            raise Refused(file, number, "control character")
        try:
            fields = split_line(line)
        except ValueError as error:
            raise Refused(file, number, str(error)) from None
        width = width or len(fields)
        if len(fields) != width:
            raise Refused(file, number, f"{len(fields)} fields instead of {width}")
        yield number, fields


def table(folder, file, required, optional=()):
    """Yields (line number, dict) of a file with fixed columns; absent optional ones are empty."""
    source = rows(folder, file)
    _, header = next(source)
    for name in header:
        if name not in required + optional:
            raise Refused(file, 1, f"unknown column {name}")
        if header.count(name) > 1:
            raise Refused(file, 1, f"column {name} twice")
    for name in required:
        if name not in header:
            raise Refused(file, 1, f"no column {name}")
    empty = dict.fromkeys(required + optional, "")
    for number, fields in source:
        yield number, {**empty, **dict(zip(header, fields))}


def pid_number(text):
    """The PID as a number, from either form; None when it is none."""
    if not any(form.fullmatch(text) for form in PID_FORMS):
        return None
    pid = int(text.replace("-", ""))
    valid = 100000 <= pid <= 1999999999 and str(pid // 10000 % 10) in TIME_TYPES
    return pid if valid else None


def integer(text, low, high):
    return int(text) if INTEGER.fullmatch(text) and low <= int(text) <= high else None


def signed_integer(text):
    """A whole number of 32 bits, a minus before it or not; None when it is none."""
    return int(text) if SIGNED_INTEGER.fullmatch(text) and -2**31 <= int(text) < 2**31 else None


def special_value(kind, text):
    """The value of a row of special_values.csv; ValueError when it is not of its type."""
    if kind == "text" and len(text) <= 255:
        return text
    if kind == "number" and NUMBER.fullmatch(text) and math.isfinite(float(text)):
        return float(text)
    if kind == "integer" and signed_integer(text) is not None:
        return signed_integer(text)
    if kind == "boolean" and text in ("true", "false"):
        return text == "true"
    if kind == "null" and text == "":
        return None
    raise ValueError("type unknown, or value that is not of its type")


def interval_of(text):
    """Interval, or None when values cannot be stored at it."""
    match = re.fullmatch(r"(\d+)([smhdM])", text, re.ASCII)
    count = int(match[1]) if match else 0
    if count == 0:
        return None
    if match[2] == "M":
        return Interval(0, count) if 12 % count == 0 else None
    seconds = count * UNIT_SECONDS[match[2]]
    return Interval(seconds, 0) if DAY % seconds == 0 else None


def fills(short, long):
    """Whether the one interval is shorter than the other and fills it without remainder; each up to a day fills a month."""
    if short is None or short == long:
        return False
    if long.months:
        return short.months == 0 or long.months % short.months == 0
    return short.months == 0 and long.seconds % short.seconds == 0


def value_of(text):
    """None, a number or a text; ValueError says what is wrong."""
    if text == "":
        return None
    if NUMBER.fullmatch(text):
        if not math.isfinite(float(text)):
            raise ValueError("number out of range")
        return float(text)
    if LIKE_A_NUMBER.match(text):
        raise ValueError("begins like a number and is none")
    if len(text) > 255:
        raise ValueError("text too long")
    return text


def time_of(text):
    """datetime, or None when the text is no time of a day of the calendar."""
    match = TIME.fullmatch(text)
    try:
        time = datetime.datetime(*(int(part or 0) for part in match.groups())) if match else None
    except ValueError:
        return None
    return time if time and time.year >= 1900 else None


def on_interval(time, interval):
    if interval.months:
        return (time.day, time.hour, time.minute, time.second) == (1, 0, 0, 0) and (time.month - 1) % interval.months == 0
    return (time.hour * 3600 + time.minute * 60 + time.second) % interval.seconds == 0


def formula_pids(text):
    """PIDs in a formula; ValueError when it is not arithmetic over PIDs and numbers (functions are not read here)."""
    pids, at, depth, operand_next = [], 0, 0, True
    while at < len(text.rstrip()):
        match = FORMULA_TOKEN.match(text, at)
        if not match:
            raise ValueError("formula not understood")
        token, at = match[1], match.end()
        if token == "(" and operand_next:
            depth += 1
        elif token == ")" and not operand_next and depth:
            depth -= 1
        elif token in "+-*/" and not operand_next:
            operand_next = True
        elif token in "+-" and operand_next:
            pass
        elif token[0] in "[.0123456789" and operand_next:
            operand_next = False
            if token[0] == "[":
                pids.append(pid_number(token[1:-1]))
        else:
            raise ValueError("formula not understood")
    if depth or operand_next or None in pids:
        raise ValueError("formula not understood")
    return pids


class Site:
    """A whole folder; reading it raises Refused at the first broken rule."""

    def __init__(self, folder):
        self.folder = folder
        for path in sorted(folder.glob("*.csv")):
            if path.name not in FILES:
                raise Refused(path.name, 1, "not a file of a site")
        self.facts = self._facts() if (folder / "site.csv").exists() else {}
        self.units = self._names("units.csv", "unit", "name", 19, 255)
        self.codes = self._names("monitor_codes.csv", "code", "short_name", 32767, 16, ("long_name", "rank"))
        self.parameter_codes = self._names("parameter_codes.csv", "code", "short_name", 32767, 16, ("long_name",))
        if not (folder / "parameters.csv").exists():
            raise Refused("parameters.csv", 1, "missing")
        self.parameters = self._parameters()
        for parameter in self.parameters.values():
            self._check_calculation(parameter)
        self._check_cycles()
        self.special_values = self._special_values()
        self.related = self._relationships()
        self.values = {pid: [] for pid, p in self.parameters.items() if p.io_type == DATABASE}
        for path in sorted(folder.glob("values/*.csv")):
            self._read_values(f"values/{path.name}")
        self._check_occurrence_parameters()
        self.occurrences = self._occurrences()

    def _facts(self):
        facts = {}
        for line, row in table(self.folder, "site.csv", ("key", "value")):
            key = row["key"]
            if key not in ("dahs_id", "site_id", "description", "complete_name"):
                raise Refused("site.csv", line, f"unknown key {key}")
            if key in facts:
                raise Refused("site.csv", line, f"key {key} twice")
            if key == "dahs_id" and integer(row["value"], 1, 2**31 - 1) is None:
                raise Refused("site.csv", line, "dahs_id out of range")
            if key == "site_id" and len(row["value"]) > 32:
                raise Refused("site.csv", line, "site_id too long")
            facts[key] = row["value"]
        return facts

    def _names(self, file, number_column, name_column, highest, longest, optional=()):
        """Rows by their number, of a file that gives names to numbers; none when it is absent."""
        names = {}
        if not (self.folder / file).exists():
            return names
        for line, row in table(self.folder, file, (number_column, name_column), optional):
            number = integer(row[number_column], 0, highest)
            if number is None or number in names:
                raise Refused(file, line, f"{number_column} ill-formed, out of range or repeated")
            if not 1 <= len(row[name_column]) <= longest:
                raise Refused(file, line, f"{name_column} empty or too long")
            if len(row.get("long_name", "")) > 1000:
                raise Refused(file, line, "long name too long")
            if row.get("rank") and integer(row["rank"], 0, 32767) is None:
                raise Refused(file, line, "rank ill-formed or out of range")
            names[number] = row
        return names

    def _special_values(self):
        """(PID, id) -> value."""
        file, values, self._special_lines = "special_values.csv", {}, {}
        if not (self.folder / file).exists():
            return values
        for line, row in table(self.folder, file, ("pid", "id", "type", "value")):
            pid, number = self._known_pid(file, line, row["pid"]), signed_integer(row["id"])
            if number is None or (pid, number) in values:
                raise Refused(file, line, "id ill-formed, out of range or repeated")
            try:
                values[pid, number] = special_value(row["type"], row["value"])
                self._special_lines[pid, number] = line
            except ValueError as error:
                raise Refused(file, line, str(error)) from None
        return values

    def _check_occurrence_parameters(self):
        for pid, p in self.parameters.items():
            if p.io_type != OCCURRENCE:
                continue
            facts = {number: self.special_values.get((pid, number)) for number in (TYPE, SECONDS, TAG, LIMIT)}

            def check(number, good):
                if not good:
                    line = 1 if facts[number] is None else self._special_lines[pid, number]
                    raise Refused("special_values.csv", line, f"special value {number} of {pid}")
            for number, value in facts.items():
                check(number, type(value) is int or number == LIMIT and value is None)
            tag, limit = (self.parameters.get(facts[number]) for number in (TAG, LIMIT))
            check(TAG, tag and tag.io_type == DATABASE)
            check(TYPE, facts[TYPE] in (3, 4))
            check(SECONDS, tag.interval.seconds == facts[SECONDS] > 0)
            check(LIMIT, facts[LIMIT] is None or facts[TYPE] == 3 and limit and limit.io_type in CONSTANTS)

    def _occurrences(self):
        """PID of the tag -> {time: [Excursion or None, Downtime or None]}."""
        file, found = "occurrences.csv", {}
        if not (self.folder / file).exists():
            return found
        optional = ("count", "category", "reason", "action", "excludable", "limit", "limit_pid")
        for line, row in table(self.folder, file, ("pid", "start"), optional):
            pid = self._known_pid(file, line, row["pid"])
            start, count = time_of(row["start"]), integer(row["count"] or "1", 1, MOST_INTERVALS)
            texts = [row[name] for name in ("category", "reason", "action", "limit")]
            if self.parameters[pid].io_type != OCCURRENCE or start is None or count is None:
                raise Refused(file, line, "no occurrence parameter, or time or count ill-formed")
            if row["excludable"] not in ("", "0", "1") or any(len(t) > n for t, n in zip(texts, (255, 1000, 1000, 255))):
                raise Refused(file, line, "flag ill-formed or text too long")
            tag, excursion = self.special_values[pid, TAG], self.special_values[pid, TYPE] == 3
            interval = self.parameters[tag].interval
            if not on_interval(start, interval):
                raise Refused(file, line, "start not on the interval of the tag")
            part = (pid, *texts[:3], row["excludable"] == "1")
            part = Excursion(*part, *self._limit(file, line, pid, row)) if excursion else Downtime(*part)
            if not excursion and (row["limit"] or row["limit_pid"]):
                raise Refused(file, line, "a downtime has no limit")
            for i in range(count):
                try:
                    time = start + datetime.timedelta(seconds=i * interval.seconds)
                except OverflowError:
                    raise Refused(file, line, "behind the year 9999") from None
                parts = found.setdefault(tag, {}).setdefault(time, [None, None])
                if parts[not excursion]:
                    raise Refused(file, line, "overlaps with an earlier row")
                parts[not excursion] = part
        return found

    def _limit(self, file, line, pid, row):
        """Text and PID of the limit."""
        text, named = row["limit"], row["limit_pid"]
        limit = self._known_pid(file, line, named) if named else None if text else self.special_values.get((pid, LIMIT))
        if limit is None or text:
            return text, limit or 0
        p = self.parameters[limit]
        if p.io_type not in CONSTANTS:
            raise Refused(file, line, "limit missing")
        return f"{str(p.value).removesuffix('.0')} {p.units}".rstrip(), limit

    def _relationships(self):
        """PID -> the set of PIDs of its group, itself included."""
        file, pairs, groups, first_lines = "relationships.csv", set(), {}, {}
        if not (self.folder / file).exists():
            return groups
        for line, row in table(self.folder, file, ("pid", "related_pid")):
            pair = frozenset(self._known_pid(file, line, row[column]) for column in ("pid", "related_pid"))
            levels = {self.parameters[pid].interval for pid in pair}
            if len(pair) == 1 or pair in pairs or len(levels) == 1:
                raise Refused(file, line, "related to itself, repeated, or of the same interval")
            for pid in pair:
                interval = self.parameters[pid].interval
                if self.parameters[pid].io_type in CONSTANTS or interval.seconds == 0 or interval.seconds % 60:
                    raise Refused(file, line, "a constant, or an interval that is not of whole minutes, hours or days")
                first_lines.setdefault(pid, line)
            pairs.add(pair)
            group = set().union(*(groups.get(pid, {pid}) for pid in pair))
            groups.update((pid, group) for pid in group)
        for pid, line in first_lines.items():
            p = self.parameters[pid]
            if p.uses and not (p.aggregation and p.uses[0] in groups[pid]):
                raise Refused(file, line, "computed, but not an aggregation of another one of its group")
        return groups

    def _known_pid(self, file, line, text):
        pid = pid_number(text)
        if pid not in self.parameters:
            raise Refused(file, line, f"{text} is not a PID of parameters.csv")
        return pid

    def _parameters(self):
        file, parameters = "parameters.csv", {}
        optional = ("description", "units", "format", "value", "aggregation", "formula", "uses", "roll_up", "type")
        for line, row in table(self.folder, file, ("pid", "name", "interval", "io_type"), optional):
            def refuse(reason):
                raise Refused(file, line, reason)
            pid, io_type = pid_number(row["pid"]), integer(row["io_type"], 1, 999)
            if pid is None or pid in parameters:
                refuse("PID ill-formed or repeated")
            if row["name"] == "":
                refuse("empty name")
            if io_type is None:
                refuse("I/O type not accepted")
            constant, calculated = io_type in CONSTANTS, io_type not in (DATABASE, OCCURRENCE, *CONSTANTS)
            interval = interval_of(row["interval"])
            if interval is None and not ((constant or io_type == OCCURRENCE) and row["interval"] == ""):
                refuse("interval not accepted")
            if bool(row["value"]) != constant:
                refuse("value missing, or out of place")
            if bool(row["uses"]) != calculated or bool(row["aggregation"]) + bool(row["formula"]) != calculated:
                refuse("uses, aggregation or formula missing, or out of place")
            if row["roll_up"] and (constant or io_type == OCCURRENCE or row["roll_up"] not in AGGREGATIONS):
                refuse("roll-up unknown, or out of place")
            if row["type"] and integer(row["type"], 0, 32767) is None:
                refuse("type ill-formed or out of range")
            try:
                value = value_of(row["value"])
            except ValueError as error:
                refuse(str(error))
            uses = [pid_number(text) for text in row["uses"].split(";")] if row["uses"] else []
            parameters[pid] = Parameter(pid, row["name"], row["description"], row["units"], interval, io_type, value,
                                        row["aggregation"], row["formula"], uses, row["roll_up"], int(row["type"] or 0), line)
        return parameters

    def _check_calculation(self, p):
        def refuse(reason):
            raise Refused("parameters.csv", p.line, reason)
        if not p.uses:
            return
        used = [self.parameters.get(pid) for pid in p.uses]  # get(None) is None: an ill-formed PID
        if None in used or len(set(p.uses)) != len(p.uses):
            refuse("a PID in uses is ill-formed, repeated or not in the file")
        if p.aggregation:
            if p.aggregation not in AGGREGATIONS:
                refuse("unknown aggregation")
            if len(used) != 1 or used[0].io_type in CONSTANTS or not fills(used[0].interval, p.interval):
                refuse("an aggregation uses one parameter of a shorter interval")
        else:
            try:
                pids = formula_pids(p.formula)
            except ValueError as error:
                refuse(str(error))
            if set(pids) != set(p.uses):
                refuse("formula and uses differ")
            for u in used:
                if not (u.io_type in CONSTANTS or u.interval == p.interval or u.roll_up and fills(u.interval, p.interval)):
                    refuse("a parameter used has another interval")

    def _check_cycles(self):
        done, path = set(), []

        def walk(pid):
            if pid in path:
                raise Refused("parameters.csv", self.parameters[path[0]].line, "a parameter uses itself")
            if pid in done:
                return
            path.append(pid)
            for used in self.parameters[pid].uses:
                walk(used)
            path.pop()
            done.add(pid)
        for pid in self.parameters:
            walk(pid)

    def _read_values(self, file):
        source = rows(self.folder, file)
        _, header = next(source)
        if header[0] != "time":
            raise Refused(file, 1, "the first column is not time")
        long_form = "pid" in header
        columns = {} if long_form else self._wide_columns(file, header)
        if long_form and sorted(header) not in (["pid", "time", "value"], ["mc", "pid", "time", "value"]):
            raise Refused(file, 1, "columns are time, pid, value and mc")
        for line, fields in source:
            time = time_of(fields[header.index("time")])
            if time is None:
                raise Refused(file, line, "time ill-formed")
            if long_form:
                row = dict(zip(header, fields))
                cells = [(self._database_pid(file, line, row["pid"]), row["value"], row.get("mc", ""))]
            else:
                cells = [(pid, fields[v], fields[m] if m else "") for pid, (v, m) in columns.items()]
            for pid, value, mc in cells:
                self._store(file, line, pid, time, value, mc)

    def _database_pid(self, file, line, text):
        pid = pid_number(text)
        if pid is None or pid not in self.parameters or self.parameters[pid].io_type != DATABASE:
            raise Refused(file, line, f"{text} is not a PID of a database parameter")
        return pid

    def _wide_columns(self, file, header):
        """PID -> (column of the value, column of the code or 0)."""
        columns = {}
        for at, name in enumerate(header[1:], 1):
            if not name.endswith(" mc"):
                pid = self._database_pid(file, 1, name)
                if pid in columns:
                    raise Refused(file, 1, f"column {name} twice")
                columns[pid] = [at, 0]
        for at, name in enumerate(header[1:], 1):
            if name.endswith(" mc"):
                pid = self._database_pid(file, 1, name[:-3])
                if pid not in columns or columns[pid][1]:
                    raise Refused(file, 1, f"column {name} twice or without its values")
                columns[pid][1] = at
        if not columns:
            raise Refused(file, 1, "no PID")
        return columns

    def _store(self, file, line, pid, time, text, code_text):
        code = integer(code_text, 0, 32767) if code_text else 0
        if code is None or (code and code not in self.codes):
            raise Refused(file, line, "monitor code not an integer or not known")
        try:
            value = value_of(text)
        except ValueError as error:
            raise Refused(file, line, str(error)) from None
        if text == "" and code_text == "":
            return
        if not on_interval(time, self.parameters[pid].interval):
            raise Refused(file, line, "time not on the interval")
        series = self.values[pid]
        if series and series[-1].time >= time:
            raise Refused(file, line, "time not later than the one before")
        series.append(Value(time, value, code))
