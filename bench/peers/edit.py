"""edit.py EDITS FILE: sets each key of the list, "section<tab>key<tab>value" a line, with the standard library's parser."""
import configparser
import sys

parser = configparser.RawConfigParser(strict=False, allow_no_value=True, delimiters=("=",), comment_prefixes=())
parser.optionxform = str
parser.read(sys.argv[2])
with open(sys.argv[1]) as edits:
    for edit in edits:
        section, key, value = edit.rstrip("\n").split("\t")
        parser.set(section.strip("[]"), key, value)
with open(sys.argv[2], "w") as file:
    parser.write(file, space_around_delimiters=False)
