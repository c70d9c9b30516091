#!/usr/bin/env perl
# The job on plain text as a competent user writes it: the file slurped, a lazy pattern.
#   find.pl find|replace BEGIN END [TEXT] FILE [i]
use strict;
use warnings;

my ($operation, $begin, $end) = splice @ARGV, 0, 3;
my $text = $operation eq 'replace' ? shift @ARGV : '';
my ($file, $flags) = @ARGV;
open my $in, '<:raw', $file or die "$file: $!\n";
local $/;
my $whole = <$in>;
close $in;
my $pattern = $flags ? qr/\Q$begin\E.*?\Q$end\E/si : qr/\Q$begin\E.*?\Q$end\E/s;
my $count = 0;
if ($operation eq 'find') {
  $count++ while $whole =~ /$pattern/g;
} else {
  $count = $whole =~ s/$pattern/$text/g;
  open my $out, '>:raw', "$file.tmp" or die "$file.tmp: $!\n";
  print {$out} $whole or die "$file.tmp: $!\n";
  close $out or die "$file.tmp: $!\n";
  rename "$file.tmp", $file or die "$file: $!\n";
}
print "$count\n";
