# A man page of what help.pm has read.
package manpage;

use strict;
use warnings;

# A text as troff prints it, character by character.
sub plain {
    my ($text) = @_;
    $text =~ s/\\/\\(rs/g;
    $text =~ s/-/\\-/g;
    $text =~ s/'/\\(aq/g;
    $text =~ s/`/\\(ga/g;
    $text =~ s/\^/\\(ha/g;
    $text =~ s/~/\\(ti/g;
    $text =~ s/^\./\\&./mg;
    return $text;
}

sub bold {
    return '\fB' . plain($_[0]) . '\fP';
}

# Words for the user to replace are in italics: <name> of keys, NAME of options.
sub value {
    return join('', map { /^<|^[A-Z]+$/ ? '\fI' . plain($_) . '\fP' : plain($_) }
        split /(<[^>]*>|\b[A-Z]{2,}\b)/, $_[0]);
}

# Lines that keep their ends: troff breaks by itself before one that begins with a blank.
sub lines {
    return join('', map { ($_ =~ /^ / ? '' : ".br\n") . plain($_) . "\n" } @_);
}

# Text that may be filled, and lines with an indent, which are shown as they are.
sub paragraph {
    my ($text) = @_;
    my $page = ".PP\n";
    my $is_shown = 0;
    for my $line (split /\n/, $text) {
        my $is_indented = $line =~ /^ /;
        $page .= $is_indented ? ".RS 0\n.nf\n" : ".fi\n.RE\n" if $is_indented != $is_shown;
        $is_shown = $is_indented;
        $page .= plain($line) . "\n";
    }
    return $page . ($is_shown ? ".fi\n.RE\n" : '');
}

sub options {
    my ($help) = @_;
    my $page = ".SH " . ($help->{has_keys} ? 'KEYS' : 'OPTIONS') . "\n";
    for my $option (@{$help->{options}}) {
        for my $form (@{$option->{forms}}) {
            my $head = $help->{has_keys}
                ? bold($form->{names}[0]) . value($form->{value})
                : join(', ', map { bold($_) } @{$form->{names}})
                    . ($form->{value} eq '' ? '' : ' ' . value($form->{value}));
            $page .= ".TP\n$head\n" . plain($form->{text}) . "\n";
        }
        $page .= ".RS\n" . lines(@{$option->{detail}}) . ".RE\n" if @{$option->{detail}};
    }
    return $page;
}

sub item {
    my ($item) = @_;
    return $item->{name} eq '' ? paragraph($item->{text})
        : ".TP\n" . bold($item->{name}) . "\n" . plain($item->{text}) . "\n";
}

# "Exit status: ..." and its kind are sections; what follows in shown lines belongs to them.
sub remarks {
    my ($help) = @_;
    my ($description, $sections) = ('', '');
    for my $text (@{$help->{rest}}) {
        if ($text =~ /^([A-Z][a-z]+(?: [a-z]+)?):(?: |\n)(.*)/s) {
            $sections .= ".SH \U$1\E\n" . paragraph($2);
        } else {
            $description .= paragraph($text);
        }
    }
    for my $title (sort keys %{$help->{sections}}) {
        $sections .= ".SH \U$title\E\n" . join('', map { item($_) } @{$help->{sections}{$title}});
    }
    return ($description, $sections);
}

# page NAME SUMMARY VERSION HELP GUIDE OTHER...: to be seen also are a file and man pages.
sub page {
    my ($name, $summary, $version, $help, $guide, @others) = @_;
    my ($more, $sections) = remarks($help);
    return join('',
        ".\\\" Made of the help of $name.\n",
        ".TH " . uc($name) . " 1 \"\" \"ntkperf $version\" \"User Commands\"\n",
        ".nh\n.ad l\n",
        ".SH NAME\n$name \\- " . plain($summary) . "\n",
        ".SH SYNOPSIS\n",
        join(".br\n", map { bold($name) . ' ' . value($_) . "\n" } @{$help->{usage}}),
        ".SH DESCRIPTION\n", (map { paragraph($_) } @{$help->{about}}), $more,
        options($help), $sections,
        ".SH SEE ALSO\n", join(",\n", (map { bold($_) . '(1)' } @others), plain($guide)), "\n");
}

1;
