# SPDX-License-Identifier: MIT
"""What benches in Python print and write: tables, and figures in Google Benchmark's format."""

import argparse
import json
import sys


def arguments(description):
    parser = argparse.ArgumentParser(description=description.splitlines()[0])
    parser.add_argument('--benchmark_out')
    parser.add_argument('--benchmark_out_format')
    parser.add_argument('--quick', action='store_true', help='less of everything, to see that it runs')
    return parser.parse_args()


def readable(seconds):
    return '%.1f us' % (1e6 * seconds) if seconds < 1e-3 else '%.2f ms' % (1e3 * seconds)


def table(head, rows):
    return ['| ' + ' | '.join(head) + ' |', '|' + '---|' * len(head)] + ['| ' + ' | '.join(row) + ' |' for row in rows]


def write(options, section, figures):
    """Prints the section's lines; the figures are (name, seconds). The page takes the section from there as it is."""
    text = '\n'.join(section) + '\n'
    sys.stdout.write(text)
    if options.benchmark_out:
        benchmarks = [{'name': name, 'real_time': 1e9 * value, 'time_unit': 'ns'} for name, value in figures]
        with open(options.benchmark_out, 'w') as out:
            json.dump({'section': text, 'benchmarks': benchmarks}, out, indent=1)
