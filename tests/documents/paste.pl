# Puts a block into a file as a reader would.
#
#   perl paste.pl BLOCK FILE          FILE is new, or has all lines of the block but one
#   perl paste.pl BLOCK FILE TEXT     behind the line of FILE that contains TEXT
#
# Fails when there is no such place, or more than one.

use strict;
use warnings;

my ($block, $file, $text) = @ARGV;

sub content_of {
    my ($name) = @_;
    open(my $in, '<', $name) or return;
    local $/;
    return scalar <$in>;
}

my $new = content_of($block) // die "$block: $!\n";
my $old = content_of($file);
my @results;
if (!defined $old) {
    @results = ($new);
} elsif (defined $text) {
    while ($old =~ /^.*\Q$text\E.*\n/mg) {
        push @results, substr($old, 0, pos $old) . $new . substr($old, pos $old);
    }
} else {
    my @lines = $new =~ /^.*\n/mg;
    for my $own (0 .. $#lines) {
        my $around = join('', @lines[grep { $_ != $own } 0 .. $#lines]);
        my $at = -1;
        while (($at = index($old, $around, $at + 1)) >= 0) {
            push @results, substr($old, 0, $at) . $new . substr($old, $at + length $around);
        }
    }
}
if (@results != 1) {
    print "-- $file has ", scalar @results, " places for the block\n";
    exit 1;
}
open(my $out, '>', $file) or die "$file: $!\n";
print $out $results[0];
close($out) or die "$file: $!\n";
