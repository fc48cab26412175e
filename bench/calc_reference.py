#!/usr/bin/env python3
"""calc_reference.py TABLE: the reference half of bench/calc. Each line of TABLE is
kind, name, Quill's nanoseconds per evaluation, Quill's result line and the expression, separated
by tabs. Evaluates each expression with Python's decimal module at 28 digits (ROUND_HALF_UP; the
integer evaluator's with Python integers, wrapped to 32 bits; Python's time includes compiling
the expression, as Quill's includes reading it), times it the same way and prints
one row per input: both times, the ratio, and how many leading digits of the results agree."""
import math
import re
import sys
import timeit
from decimal import Decimal, Context, ROUND_HALF_UP, localcontext

CONTEXT = Context(prec=28, rounding=ROUND_HALF_UP, Emin=-999999, Emax=999999)
TARGET_MS = {"i": 1.0, "e": 50.0, "r": 50.0}
KIND = {"i": "integer", "e": "real, expression", "r": "real, running"}


def sin(x):
    with localcontext(CONTEXT) as c:
        c.prec += 12
        x = +x
        term, total, i = x, x, 1
        while True:
            i += 2
            term = -term * x * x / ((i - 1) * i)
            if total + term == total:
                break
            total += term
    return +total


def cos(x):
    with localcontext(CONTEXT) as c:
        c.prec += 12
        term, total, i = Decimal(1), Decimal(1), 0
        while True:
            i += 2
            term = -term * x * x / ((i - 1) * i)
            if total + term == total:
                break
            total += term
    return +total


def tan(x):
    with localcontext(CONTEXT) as c:
        c.prec += 12
        value = sin(x) / cos(x)
    return +value


def atan(x):
    with localcontext(CONTEXT) as c:
        c.prec += 12
        for _ in range(4):  # atan x = 2 atan(x / (1 + sqrt(1 + x^2))) until x is small
            x = x / (1 + (1 + x * x).sqrt())
        term, total, i = x, x, 1
        while True:
            term = -term * x * x
            i += 2
            if total + term / i == total:
                break
            total += term / i
        total *= 16
    return +total


def sqrt(x):
    return x.sqrt(CONTEXT)


NUMBER = r"(?:\d[\d,]*(?:\.\d*)?|\.\d+)(?:e[+-]?\d+)?"
TOKEN = re.compile(r"\s*(" + NUMBER + r"|sqrt|sin|cos|tan|atan|pi|e|[-+*/^()])", re.I)
PI = Decimal("3.141592653589793238462643383")
E = Decimal("2.718281828459045235360287471")


def tokens(text):
    at = 0
    while at < len(text):
        match = TOKEN.match(text, at)
        if not match:
            raise ValueError("cannot read %r" % text[at:at + 20])
        yield match.group(1)
        at = match.end()


def as_python(text):
    """An expression-style input as a Python expression over Decimal."""
    parts = []
    for token in tokens(text):
        lower = token.lower()
        if token[0].isdigit() or token[0] == ".":
            parts.append("D(%r)" % token.replace(",", ""))
        elif lower in ("sqrt", "sin", "cos", "tan", "atan"):
            parts.append(lower)
        elif lower == "pi":
            parts.append("PI")
        elif lower == "e":
            parts.append("E")
        else:
            parts.append("**" if token == "^" else token)
    return "".join(parts)


def running(text):
    """The running style: strictly left to right."""
    items = list(tokens(text))
    value = Decimal(items[0].replace(",", ""))
    for op, operand in zip(items[1::2], items[2::2]):
        x = Decimal(operand.replace(",", ""))
        value = {"+": CONTEXT.add, "-": CONTEXT.subtract, "*": CONTEXT.multiply,
                 "/": CONTEXT.divide, "^": CONTEXT.power}[op](value, x)
    return value


def integer(source):
    value = eval(source, {"math": math}) & 0xFFFFFFFF
    return value - (1 << 32) if value >= 1 << 31 else value


def quill_value(result):
    """Quill's first result line ("= -1,234.5e-3") as a Decimal; None for an error message."""
    if not result.startswith("= "):
        return None
    return Decimal(result[2:].replace(",", ""))


def agreeing_digits(ours, reference):
    if ours is None:
        return "error"
    if ours == reference:
        return "all"
    if reference == 0:
        return "0"
    with localcontext(CONTEXT) as c:
        c.prec = 60
        relative = abs((ours - reference) / reference)
    return str(max(0, -relative.adjusted() - 1))


def main(table):
    namespace = {"D": Decimal, "sqrt": sqrt, "sin": sin, "cos": cos, "tan": tan, "atan": atan,
                 "PI": PI, "E": E}
    print("%-18s %-37s %10s %10s %7s %8s %7s" % ("calculator", "input (2047 characters at most)",
                                                 "Quill", "Python", "ratio", "agree", "target"))
    for line in open(table, encoding="utf-8"):
        kind, name, nanos, result, text = line.rstrip("\n").split("\t")
        if kind == "i":
            source = text.replace("sqrt(", "math.isqrt(").replace("/", "//")
            work = lambda: integer(source)
        elif kind == "r":
            work = lambda: running(text)
        else:
            source = as_python(text)

            def work(source=source):
                with localcontext(CONTEXT):
                    return eval(source, namespace)
        try:
            reference = work()
        except ArithmeticError as error:  # out of the calculators' range too
            print("%-18s %-37s %s in Python, Quill shows %s" % (KIND[kind], name,
                                                               type(error).__name__, result))
            continue
        runs, took = timeit.Timer(work).autorange()
        python_ms = min([took / runs] + [t / runs for t in timeit.repeat(work, number=runs, repeat=4)]) * 1e3
        quill_ms = float(nanos) / 1e6
        if kind == "i":
            agree = "all" if result == str(reference) else "no (%s)" % result
        else:
            agree = agreeing_digits(quill_value(result), reference)
        target = TARGET_MS[kind]
        print("%-18s %-37s %8.3f ms %7.3f ms %7.2f %8s %4.0f ms%s" % (
            KIND[kind], name, quill_ms, python_ms, quill_ms / python_ms, agree, target,
            "" if quill_ms <= target else "  OVER"))


if __name__ == "__main__":
    main(sys.argv[1])
