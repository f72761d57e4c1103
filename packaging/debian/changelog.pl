# CHANGELOG.md as the changelog of a Debian package.
#
#   perl changelog.pl CHANGELOG.md PACKAGE CONTACT DATE >changelog
#
# A release is a heading "## VERSION, ..." and its changes the items of the lists below it. DATE is
# that of the packages.

use strict;
use warnings;
use Text::Wrap qw(wrap $columns);

my ($file, $package, $contact, $date) = @ARGV;
$columns = 80;

open(my $in, '<', $file) or die "$file: $!\n";
my $text = join('', <$in>);
my $releases = 0;
while ($text =~ /^## (\d[\d.]*)[^\n]*\n(.*?)(?=^## |\z)/msg) {
    my ($version, $body) = ($1, $2);
    my @items = $body =~ /^- (.*?)(?=^- |^#|^$|\z)/msg or die "$file: nothing about $version\n";
    print "$package ($version) bookworm; urgency=medium\n\n";
    for my $item (@items) {
        $item =~ s/\s+/ /g;
        $item =~ s/ $//;
        print wrap('  * ', '    ', $item), "\n";
    }
    print "\n -- $contact  $date\n\n";
    $releases++;
}
die "$file: no release found\n" if $releases == 0;
