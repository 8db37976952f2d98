"""Who we are, from the file that the program is built from."""

import configparser
from pathlib import Path

_parser = configparser.ConfigParser(interpolation=None)
_parser.read(Path(__file__).resolve().parents[2] / "src" / "product" / "product.ini", encoding="utf-8")

PRODUCT = dict(_parser["product"])
UNINSTALL_KEY_NAME = PRODUCT["id"] + "_is1"
