# Whether a text is part of another one.
#
#   perl lines.pl SHOWN WHOLE          numbers, dates and the width of blanks may differ
#   perl lines.pl --exact SHOWN WHOLE
#
# Each line of the file SHOWN has to be in the file WHOLE, behind the line before it. "..." stands
# for any lines, and at the end of a line for the rest of it; lines about disturbances depend on what else the machine does, and are passed over.
# Prints the first line that is not there, and fails.

use strict;
use warnings;

my $exact = $ARGV[0] eq '--exact' && shift @ARGV;

sub plain {
    my ($line) = @_;
    $line =~ s/\s+$//;
    return $line if $exact;
    $line =~ s/\b(?:Mon|Tue|Wed|Thu|Fri|Sat|Sun) (?=[A-Z])//g;
    $line =~ s/\b(?:Jan|Feb|Mar|Apr|May|Jun|Jul|Aug|Sep|Oct|Nov|Dec) +\d/Month 0/g;
    $line =~ s/(?<![A-Za-z\d])\d[\d.]*(?:e[+-]?\d+)?/0/g;
    $line =~ s/,-$/,0/; # the last cell of a table, which few calls leave empty
    $line =~ s/ +/ /g;
    return $line;
}

sub lines_of {
    my ($file) = @_;
    open(my $in, '<', $file) or die "$file: $!\n";
    return map { plain($_) } <$in>;
}

# fits SHOWN LINE
sub fits {
    my ($shown, $line) = @_;
    return $shown =~ /^(.*\S) ?\.\.\.$/ ? index($line, $1) == 0 : $shown eq $line;
}

my $disturbance = qr/^spread=|^ Note : 0 of 0 measurements|^ To measure again: |^ \(taskset /;
my @whole = lines_of($ARGV[1]);
for my $line (lines_of($ARGV[0])) {
    next if $line =~ /^\s*(?:\.\.\.)?$/ || $line =~ $disturbance;
    shift @whole while @whole && !fits($line, $whole[0]);
    if (!@whole) {
        print "-- not there, or not at this place: $line\n";
        exit 1;
    }
    shift @whole;
}
