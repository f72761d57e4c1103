# Whether a man page says what the program's help says.
#
#   perl pages_check.pl HELP PAGE          the text of the help, the page as man prints it
#
# Every option of one has to be in the other, and every line of the help in the page. Prints what
# is not, and fails.

use strict;
use warnings;

my ($help_file, $page_file) = @ARGV;
my $faults = 0;

sub slurp {
    open(my $in, '<', $_[0]) or die "$_[0]: $!\n";
    local $/;
    return <$in>;
}

sub fault {
    print "$_[0]\n";
    $faults++;
}

# Without what the layout changes.
sub squeezed {
    my ($text) = @_;
    $text =~ s/, (?=-)/,/g;
    $text =~ s/\s+/ /g;
    $text =~ s/^ | $//g;
    return $text;
}

# "-f < or-pattern> = text" or "  -p,--precision PERCENT    text": the option and the text.
sub option_of {
    my ($line) = @_;
    return ($1, $2) if $line =~ /^(-.*?)\s*= (.+)/;
    return ($1, $2 // '') if $line =~ /^  (-\S.*?)(?:\s{2,}(\S.*))?$/;
    return;
}

my $page = slurp($page_file);
my ($section) = $page =~ /^(?:KEYS|OPTIONS)\n(.*?)^\S/ms or die "$page_file: no options\n";
my %described = map { /^ {7}(-\S.*?)(?:  .*|\t.*)?$/ ? (squeezed($1) => 1) : () }
    split(/\n/, $section);
my $whole = squeezed($page);

# "Exit status: ..." is a section of that name.
sub is_in_page {
    my ($text) = @_;
    return 1 if index($whole, squeezed($text)) >= 0;
    my ($title, $body) = $text =~ /^([A-Z][a-z]+(?: [a-z]+)?):(?: |$)(.*)/ or return 0;
    return $page =~ /^\U$title\E$/m && index($whole, squeezed($body)) >= 0;
}

my $help = slurp($help_file);
$help =~ s/.*^EXTENDED HELP[^\n]*\n//ms;
for my $line (split /\n/, $help) {
    my ($option, $text) = option_of($line);
    if (defined $option) {
        $option =~ s/^(-f) </$1</; # a blank for the eye
        $option = squeezed($option);
        # Short options have their text on the same line.
        my ($found) = grep { $_ eq $option || "$option $text" eq $_ } keys %described;
        defined $found ? delete $described{$found} : fault("not in the page: $option");
    } else {
        ($text) = $line =~ /^(?:usage: |Options:)?(.*)/i;
    }
    fault("not in the page: $text") if !is_in_page($text);
}
fault("not in the help: $_") for sort keys %described;
exit($faults > 0);
