"""Derives minute values from hourly ones.

The shape is invented: a drift towards the neighbouring hours and some noise, from a fixed seed. The total is not: the mean of an
hour's operating minutes equals, exactly, the hourly value that they are made from. All of it is whole-number arithmetic on
values in units of the last decimal place, and of the random generator only random() is used, whose sequence Python keeps: every
machine makes the same digits.
"""

import random
from fractions import Fraction

MINUTES = 60
NOISE = 40  # greatest step of the noise, in parts per thousand
MEMORY = 4  # each minute keeps (MEMORY - 1) / MEMORY of the noise before it


def operating_minutes(fraction, before, after):
    """Which minutes of an hour the unit ran, for its operating time as a fraction.

    A part hour is one run without a break: at the end of the hour when the unit starts up in it (it did not run in the hour
    before, or runs on into the next), at the beginning otherwise.
    """
    count = Fraction(fraction) * MINUTES
    if count.denominator != 1:
        raise ValueError(f"operating time {fraction} is no whole number of minutes")
    count = int(count)
    starts_up = before == 0 or (before < 1 and after > 0)
    first = MINUTES - count if starts_up else 0
    return range(first, first + count)


def shape(generator, count, now, before, after):
    """Weights, whole numbers above 0, of the minutes of one hour."""
    level = max(now, 1)
    drift = max(min(after - before, level), -level)  # over two hours, so that no weight falls to 0
    noise, weights = 0, []
    for i in range(count):
        noise += int(generator.random() * (2 * NOISE + 1)) - NOISE - noise // MEMORY
        noise = max(min(noise, 400), -400)
        base = 4 * MINUTES * level + drift * (2 * i - (count - 1))
        weights.append(max(base * (1000 + noise), 1))
    return weights


def share_out(total, weights):
    """Whole numbers in proportion to the weights that add up to the total (largest remainders get the rest)."""
    whole = sum(weights)
    parts = [total * w // whole for w in weights]
    order = sorted(range(len(weights)), key=lambda i: (-(total * weights[i] % whole), i))
    for i in order[:total - sum(parts)]:
        parts[i] += 1
    return parts


def decimal_text(units, decimals):
    text = str(units).rjust(decimals + 1, "0")
    return f"{text[:-decimals]}.{text[-decimals:]}"


def series(hours, column, decimals, per_hour_total, seed):
    """Yields (time, text or '') for every minute of the hours.

    per_hour_total: the hourly value is an amount of the hour (mmBtu), the minutes are a rate (mmBtu/hr): then the sum of the
    operating minutes, divided by 60, equals the hourly value.
    """
    generator = random.Random(f"{seed} {column}")
    scale = 10 ** decimals
    values = [Fraction(h.values[column] or "0") * scale for h in hours]
    times = [Fraction(h.values["OPTIME"]) for h in hours]
    for n, hour in enumerate(hours):
        def neighbour(of, k):
            return of[k] if 0 <= k < len(hours) else of[n]
        running = operating_minutes(times[n], neighbour(times, n - 1), neighbour(times, n + 1))
        total = values[n] * (MINUTES if per_hour_total else len(running))
        if total.denominator != 1:
            raise ValueError(f"{hour.time}: {column} needs more than {decimals} decimals")
        around = [int(neighbour(values, k)) if neighbour(times, k) else int(values[n]) for k in (n - 1, n + 1)]
        weights = shape(generator, len(running), int(values[n]), *around)
        parts = dict(zip(running, share_out(int(total), weights))) if running else {}
        for minute in range(MINUTES):
            text = decimal_text(parts[minute], decimals) if minute in parts else ""
            yield f"{hour.time[:-2]}{minute:02d}", text
