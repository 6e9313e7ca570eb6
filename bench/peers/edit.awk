# awk -f edit.awk EDITS FILE: writes the file with each key of the list, "section<tab>key<tab>value" a line, set.
NR == FNR { split($0, part, "\t"); values[part[1] "\t" part[2]] = part[3]; next }
/^\[/ { section = $0 }
{
  key = $0
  sub(/=.*/, "", key)
  if (index($0, "=") && (section "\t" key) in values) print key "=" values[section "\t" key]
  else print
}
