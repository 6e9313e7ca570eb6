# perl -i edit.pl EDITS FILE: sets each key of the list, "section<tab>key<tab>value" a line, that the file has.
use strict;
use warnings;

my %values;
my $list = shift;
open my $edits, '<', $list or die;
while (<$edits>) { chomp; my ($section, $key, $value) = split /\t/; $values{"$section\t$key"} = $value; }
my $section = '';
while (<>) {
  if (/^\[/) { chomp($section = $_); }
  elsif (/^([^=]*)=/ && exists $values{"$section\t$1"}) { $_ = "$1=" . $values{"$section\t$1"} . "\n"; }
  print;
}
