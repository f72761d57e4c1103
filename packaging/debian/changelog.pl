# CHANGELOG.md as the changelog of a Debian package.
#
#   perl changelog.pl CHANGELOG.md PACKAGE CONTACT DATE FILE      writes FILE.gz
#
# A release is a heading "## VERSION, ..." and its changes the items of the lists below it. DATE is
# that of the packages.

use strict;
use warnings;
use Text::Wrap qw(wrap $columns);

my ($file, $package, $contact, $date, $changelog) = @ARGV;
$columns = 80;

open(my $in, '<', $file) or die "$file: $!\n";
my $text = join('', <$in>);
open(my $out, '>', $changelog) or die "$changelog: $!\n";
my $releases = 0;
while ($text =~ /^## (\d[\d.]*)[^\n]*\n(.*?)(?=^## |\z)/msg) {
    my ($version, $body) = ($1, $2);
    my @items = $body =~ /^- (.*?)(?=^- |^#|^$|\z)/msg or die "$file: nothing about $version\n";
    print $out "$package ($version) bookworm; urgency=medium\n\n";
    for my $item (@items) {
        $item =~ s/\s+/ /g;
        $item =~ s/ $//;
        print $out wrap('  * ', '    ', $item), "\n";
    }
    print $out "\n -- $contact  $date\n\n";
    $releases++;
}
die "$file: no release found\n" if $releases == 0;
close($out) or die "$changelog: $!\n";
system('gzip', '-9nf', $changelog) == 0 or die "gzip failed\n";
