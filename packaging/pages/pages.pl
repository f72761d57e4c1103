# Makes the man page and the completions of a program from what it prints as its help.
#
#   perl pages.pl NAME PROGRAM KEY SUMMARY VERSION SOURCES GUIDE DIRECTORY OTHER...
#
# KEY prints the help of PROGRAM; SUMMARY is the line behind its name. A help that begins with the
# options gets the first paragraph of README.md in SOURCES as its description, and what docs/guide.md
# there marks for man pages. To be seen also: the file GUIDE and the man pages OTHER.
# Writes DIRECTORY/NAME.1.gz, NAME.bash and _NAME.

use strict;
use warnings;
use File::Basename;
use lib dirname(__FILE__);
use help;
use manpage;
use completions;

my ($name, $program, $key, $summary, $version, $sources, $guide, $directory, @others) = @ARGV;

sub slurp {
    my ($what, $mode, @words) = @_;
    open(my $in, $mode, @words) or die "$what: $!\n";
    local $/;
    my $text = <$in>;
    close($in) or die "$what: ended with status " . ($? >> 8) . "\n";
    return $text;
}

sub write_file {
    my ($file, $text) = @_;
    open(my $out, '>', $file) or die "$file: $!\n";
    print $out $text;
    close($out) or die "$file: $!\n";
}

sub read_file {
    my $file = "$sources/$_[0]";
    return slurp($file, '<', $file);
}

sub introduction {
    my ($paragraph) = read_file('README.md') =~ /^# .*?\n\n(.*?)\n\n/s;
    $paragraph =~ tr/`//d;
    return $paragraph;
}

delete $ENV{LD_LIBRARY_PATH}; # the program's own library
my $help = help::read_help(slurp($program, '-|', $program, $key));
die "$name: no options found in what it prints with $key\n" unless @{$help->{options}};
unless (@{$help->{about}}) {
    $help->{about} = [introduction()];
    $help->{sections} = help::read_sections(read_file('docs/guide.md'));
}
write_file("$directory/$name.1", manpage::page($name, $summary, $version, $help, $guide, @others));
system('gzip', '-9nf', "$directory/$name.1") == 0 or die "gzip failed\n";
write_file("$directory/$name.bash", completions::completion('bash', $name, $help));
write_file("$directory/_$name", completions::completion('zsh', $name, $help));
