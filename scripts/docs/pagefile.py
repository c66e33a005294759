"""The command line every page writer shares: `writer.py SOURCE TARGET` writes page(SOURCE) to TARGET."""

import sys


def main(page):
    with open(sys.argv[2], "w", encoding="utf-8") as output:
        output.write(page(sys.argv[1]))
