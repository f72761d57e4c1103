#!/usr/bin/env perl
# Prints one-line mutations of the sources named on the command line, in an order that the seed
# fixes: file, line number, new text, separated by tabs, each on a line. It takes the layers (the
# first folders) in turn and does not end by itself; the reader does.
#
#   scripts/mutations.pl SEED FILE...
use strict;
use warnings;

my ($seed, @files) = @ARGV;
srand($seed);

# Pairs of a pattern and the text or function that replaces one match of it. The sources are
# formatted, so that binary operators stand between blanks and template brackets do not.
my %swapped = (
    '<' => '<=', '<=' => '<', '>' => '>=', '>=' => '>', '==' => '!=', '!=' => '==',
    '+' => '-', '-' => '+', '*' => '+', '/' => '*', '%' => '+', '+=' => '-=', '-=' => '+=',
    '&' => '|', '|' => '&', '&&' => '||', '||' => '&&', '<<' => '>>', '>>' => '<<',
    'true' => 'false', 'false' => 'true', '++' => '--', '--' => '++',
);
my @mutators = (
    # an operator swapped
    [qr/(?<= )(?:<=?|>=?|[=!]=|[-+]=?|[*\/%&|]|&&|\|\||<<|>>)(?= )/, sub { $swapped{$_[0]} }],
    [qr/\+\+|--/, sub { $swapped{$_[0]} }],
    # a constant off by one, another truth
    [qr/(?<![\w.'])\d+(?![\w.'])/, sub { $_[0] + (int rand 2 || $_[0] == 0 ? 1 : -1) }],
    [qr/\b(?:true|false)\b/, sub { $swapped{$_[0]} }],
    # a condition negated
    [qr/(?<=\bif \()[^;]+(?=\) \{$)/, sub { "!($_[0])" }],
    [qr/(?<=^    return )[^;{}]+ (?:[=!]=|[<>]=?|&&|\|\|) [^;{}]+(?=;$)/, sub { "!($_[0])" }],
    # a statement removed: a call or an assignment
    [qr/(?<=^    )\s*(?:[\w.:\[\]]|->)+(?:\(.*\)| [-+*|&]?= .*);$/, sub { ';' }],
);

# The parts of a line outside of strings and comments, as pairs of offset and length.
sub code_parts {
    my ($line) = @_;
    my @parts;
    while ($line =~ m{\G(?:(//.*|\#.*|/\*.*)|("(?:\\.|[^"\\])*"|'(?:\\.|[^'\\])')|([^"'/\#]+|.))}g) {
        push @parts, [$-[3], length $3] if defined $3;
    }
    return @parts;
}

# All matches that lie in code alone: a mutation that would change a text is none of these.
sub matches {
    my ($line, $pattern) = @_;
    my $code = $line;
    my $mask = "\0" x length $line;
    substr($mask, $_->[0], $_->[1], "\1" x $_->[1]) for code_parts($line);
    my @found;
    while ($line =~ /$pattern/g) {
        push @found, [$-[0], $+[0] - $-[0]] if substr($mask, $-[0], 1) eq "\1";
    }
    return @found;
}

sub mutated {
    my ($line) = @_;
    return if $line =~ /^\s*(?:#|\/\/|static_assert|using|namespace|template)/;
    my ($pattern, $change) = @{$mutators[int rand @mutators]};
    my @found = matches($line, $pattern) or return;
    my ($at, $length) = @{$found[int rand @found]};
    substr($line, $at, $length, $change->(substr($line, $at, $length)));
    return $line;
}

# The lines of each layer, as pairs of a file and a line number.
my %layers;
my %text;
for my $file (@files) {
    open my $in, '<', $file or die "$file: $!\n";
    chomp(my @lines = <$in>);
    $text{$file} = \@lines;
    push @{$layers{($file =~ m{^([^/]+)/})[0]}}, map { [$file, $_] } 0 .. $#lines;
}

$SIG{PIPE} = sub { exit 0 };
$| = 1;
while (1) {
    for my $layer (sort keys %layers) {
        my $new;
        until (defined $new) {
            my ($file, $number) = @{$layers{$layer}[int rand @{$layers{$layer}}]};
            $new = mutated($text{$file}[$number]);
            print join("\t", $file, $number + 1, $new), "\n" if defined $new;
        }
    }
}
