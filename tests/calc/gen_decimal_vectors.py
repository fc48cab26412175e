#!/usr/bin/env python3
"""Writes decimal_vectors.inc: 28-digit results from Python's decimal module for the real
calculator's tests. Numbers are written as [-]DIGITSeEXP meaning 0.DIGITS x 10^EXP ("0" is zero).

Arithmetic and square root are correctly rounded at 28 digits (ROUND_HALF_UP). Sine, cosine,
tangent and arc tangent are computed at 60 digits by series and then rounded to 28.
Run from anywhere: python3 tests/calc/gen_decimal_vectors.py > tests/calc/decimal_vectors.inc
"""
import random
from decimal import Decimal, Context, ROUND_HALF_UP, localcontext

random.seed(20240607)
C28 = Context(prec=28, rounding=ROUND_HALF_UP, Emin=-999999, Emax=999999)
EXP_MIN, EXP_MAX = -16384, 16383


def text(x):
    """0.DIGITS x 10^EXP form of a Decimal, or None when out of the calculator's range."""
    if x == 0:
        return "0"
    sign, digits, exponent = x.as_tuple()
    s = "".join(map(str, digits)).rstrip("0")
    e = exponent + len(digits)
    if not EXP_MIN <= e <= EXP_MAX:
        return None
    return ("-" if sign else "") + s + "e" + str(e)


def number(digits, exponent, negative=False):
    d = Decimal(("-" if negative else "") + "0." + digits + "e" + str(exponent))
    return d


def random_number(span=30, ndigits=None):
    n = ndigits or random.choice([28, 28, 28, 28, 1, 3, 12, 27])
    digits = str(random.randint(1, 9)) + "".join(random.choice("0123456789") for _ in range(n - 1))
    return number(digits, random.randint(-span, span), random.random() < 0.4)


lines = []


def emit(op, a, b, r):
    ta = text(a)
    tb = text(b) if b is not None else ""
    tr = text(r)
    if ta is None or tb is None or tr is None:
        return
    lines.append('{\'%s\', "%s", "%s", "%s"},' % (op, ta, tb, tr))


def arithmetic():
    pairs = []
    for _ in range(150):
        pairs.append((random_number(), random_number()))
    for _ in range(40):  # close exponents and cancellation
        a = random_number(5, 28)
        b = -a + random_number(-40 + 40, 28) * Decimal(10) ** random.randint(-40, -2)
        pairs.append((a, +C28.plus(b)))
    for _ in range(25):  # wide ranges
        pairs.append((random_number(16000), random_number(16000)))
    nines = Decimal("0." + "9" * 28)
    pairs += [(nines, Decimal("0.5e-27")), (nines, Decimal("0.1e-28")), (Decimal(1), Decimal("-1e-40")),
              (Decimal(1), Decimal(-1)), (Decimal("0.5"), Decimal("0.5")), (nines, nines)]
    for a, b in pairs:
        emit("+", a, b, C28.add(a, b))
        emit("-", a, b, C28.subtract(a, b))
        emit("*", a, b, C28.multiply(a, b))
        if b != 0:
            emit("/", a, b, C28.divide(a, b))


def roots():
    xs = [abs(random_number(40)) for _ in range(100)]
    xs += [Decimal(2), Decimal(1), Decimal(100), Decimal("0.01"), Decimal("1e-16383"), Decimal("9e16382"),
           Decimal("0." + "9" * 28), Decimal("0.1")]
    for x in xs:
        emit("r", x, None, C28.sqrt(x))


def pi60():
    with localcontext() as ctx:
        ctx.prec = 70
        # Machin: pi = 16 atan(1/5) - 4 atan(1/239)
        return 16 * atan_series(Decimal(1) / 5) - 4 * atan_series(Decimal(1) / 239)


def atan_series(x):
    with localcontext() as ctx:
        ctx.prec += 5
        total, power, n, x2 = Decimal(0), x, 1, x * x
        while True:
            term = power / n
            if abs(term) < Decimal(10) ** -(ctx.prec + 5):
                break
            total += term if (n // 2) % 2 == 0 else -term
            power *= x2
            n += 2
        return +total


def atan(x):
    with localcontext() as ctx:
        ctx.prec = 70
        # halve the angle until the series converges quickly
        y, k = x, 0
        while abs(y) > Decimal("0.1"):
            y = y / (1 + (1 + y * y).sqrt())
            k += 1
        return atan_series(y) * (2 ** k)


def sin_cos(x):
    with localcontext() as ctx:
        ctx.prec = 70
        two_pi = 2 * pi60()
        x = x - two_pi * (x / two_pi).to_integral_value()
        s, c, term, n = Decimal(0), Decimal(0), Decimal(1), 0
        while True:
            if n % 2 == 0:
                c += term if n % 4 == 0 else -term
            else:
                s += term if n % 4 == 1 else -term
            n += 1
            term = term * x / n
            if abs(term) < Decimal(10) ** -75 and n > 2:
                break
        return s, c


def functions():
    xs = [random_number(1, 28) * random.randint(1, 9) for _ in range(60)]
    xs += [Decimal(v) for v in ("0", "1", "-1", "0.5", "3", "6", "1e-10", "100", "1000")]
    xs += [C28.plus(pi60() / d) for d in (2, 3, 4, 6)]
    for x in xs:
        x = C28.plus(x)
        s, c = sin_cos(x)
        emit("s", x, None, C28.plus(s))
        emit("c", x, None, C28.plus(c))
        if abs(c) > Decimal("1e-3"):
            with localcontext() as ctx:
                ctx.prec = 70
                t = s / c
            emit("t", x, None, C28.plus(t))
    ys = [random_number(3, 28) for _ in range(60)]
    ys += [Decimal(v) for v in ("1", "-1", "0.2679491924311227513122446453", "0.26", "0.27", "1e-20",
                                  "1e20", "3.7320508075688772935274463415")]
    for y in ys:
        y = C28.plus(y)
        emit("a", y, None, C28.plus(atan(y)))


arithmetic()
roots()
functions()
print("// Generated by gen_decimal_vectors.py from Python's decimal module: {op, a, b, result},")
print("// numbers as 0.DIGITS x 10^EXP. + - * / arithmetic, r square root, s c t a sine, cosine,")
print("// tangent, arc tangent.")
print("\n".join(lines))
