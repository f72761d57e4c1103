# Takes the fenced blocks out of documents.
#
#   perl blocks.pl DIR DOCUMENT...
#
# A block of a language, or one that shows commands ("$ ..."), has to say how it is tested, in a
# comment before it: see marks below. Writes DIR/<n>, the text of a block with a mark, and prints a
# line "<n>\t<document>:<line>\t<language>\t<mark>\t<what follows the mark's colon>" for each.
# Fails with a list of the blocks that do not say it.

use strict;
use warnings;

my %marks = (
    runs    => 'its commands end well and print the lines shown, but for the numbers; with a'
             . ' reason behind a colon only the commands count',
    printed => 'lines that the last block of commands printed, or wrote to the file named',
    pasted  => 'goes into the file named, "behind" the line that contains a text',
    quoted  => 'lines of the file named',
    shown   => 'is not tested, for the reason given',
);

my ($directory, @documents) = @ARGV;
my $number = 0;
my $faults = 0;

sub fault {
    print STDERR "-- @_\n";
    $faults++;
}

# finish PLACE LANGUAGE COMMENT TEXT
sub finish {
    my ($place, $language, $comment, $text) = @_;
    if ($comment !~ /^(\w+)(?:: (.+))?$/ || !$marks{$1}) {
        return if $language eq '' && $text !~ /^\$ /m && $comment eq '';
        fault("$place: a comment before the block has to say how it is tested: "
            . join(', ', map { "<!-- $_ -->" } sort keys %marks));
        return;
    }
    my ($mark, $argument) = ($1, $2 // '');
    fault("$place: '$mark' needs a colon and what it is about")
        if $argument eq '' && $mark =~ /pasted|quoted|shown/;
    $number++;
    open(my $out, '>', "$directory/$number") or die "$directory/$number: $!\n";
    print $out $text;
    close($out) or die "$directory/$number: $!\n";
    print join("\t", $number, $place, $language || '-', $mark, $argument || '-'), "\n";
}

for my $document (@documents) {
    open(my $in, '<', $document) or die "$document: $!\n";
    my ($comment, $indent, $language, $place, $text) = ('');
    while (my $line = <$in>) {
        if (defined $text) {
            $line =~ s/^$indent//;
            if ($line =~ /^```$/) {
                finish($place, $language, $comment, $text);
                ($comment, $text) = ('', undef);
            } else {
                $text .= $line;
            }
        } elsif ($line =~ /^( *)```(\w*)$/) {
            ($indent, $language, $place, $text) = ($1, $2, "$document:$.", '');
        } elsif ($line =~ /^ *<!-- (.+) -->$/) {
            $comment = $1;
        } elsif ($line =~ /\S/) {
            $comment = '';
        }
    }
    fault("$place: the block has no end") if defined $text;
}
exit($faults > 0);
