# Reads what a program prints as its help, which is the only place where its options are described.
package help;

use strict;
use warnings;

# read_help TEXT: a hash with
#   usage    => [LINE...], about => [PARAGRAPH...], rest => [PARAGRAPH...] (behind the options),
#   sections => {} (see read_sections),
#   options  => [{forms => [{names => [NAME...], value => '', text => ''}], detail => [LINE...]}...]
#   has_keys => whether the options are keys of the harness (one letter, their argument attached)
sub read_help {
    my ($text) = @_;
    return $text =~ /^EXTENDED HELP/m ? read_keys($text) : read_options($text);
}

# A block for each key: lines "-key<argument> = text", then the explanation.
sub read_keys {
    my ($text) = @_;
    my @options;
    $text =~ s/.*^EXTENDED HELP[^\n]*\n//ms;
    for my $block (split /\n\n/, $text) {
        my (@forms, @detail);
        for my $line (split /\n/, $block) {
            if (!@detail && $line =~ /^(-.*?)\s*= (.+)$/) {
                push @forms, key_form($1, $2);
            } else {
                push @detail, $line;
            }
        }
        push @options, {forms => \@forms, detail => \@detail} if @forms;
    }
    return {usage => ['[KEY...]'], about => [], rest => [], sections => {}, options => \@options,
        has_keys => 1};
}

# "-f=< eq-pattern>", "-i[<file-name>]", "-t[-|+|=]<patrn>", "-H[ONLY]"
sub key_form {
    my ($form, $text) = @_;
    my ($name, $argument) = $form =~ /^(-.[^<\[ ]*) ?(.*)$/;
    my @names = ($name);
    if ($argument =~ /^\[([^<\]]+)\]/) {
        push @names, map { "$name$_" } split /\|/, $1;
    }
    return {names => \@names, value => $argument, text => $text};
}

# "  -p,--precision PERCENT    text" between usage and the remarks at the end.
sub read_options {
    my ($text) = @_;
    my %help = (usage => [], about => [], options => [], rest => [], sections => {},
        has_keys => 0);
    my ($has_options, $name) = (0);
    for my $paragraph (split /\n\s*\n/, $text) {
        my @about;
        for my $line (split /\n/, $paragraph) {
            if ($line =~ /^usage: (\S+) (.*)/i) {
                $name = $1;
                push @{$help{usage}}, $2;
            } elsif (defined $name && $line =~ /^ {7}\Q$name\E (.*)/) {
                push @{$help{usage}}, $1;
            } elsif ($line =~ /^  (-\S.*?)(?:\s{2,}(\S.*))?$/) {
                push @{$help{options}}, option($1, $2 // '');
                $has_options = 1;
            } elsif ($has_options && $line =~ /^ {20,}(\S.*)/) { # goes on below a long name
                $help{options}[-1]{forms}[0]{text} .= ($help{options}[-1]{forms}[0]{text} ? ' ' : '') . $1;
            } elsif ($line !~ /^Options:$/) {
                push @about, $line;
            }
        }
        push @{$has_options && $paragraph !~ /^usage/i ? $help{rest} : $help{about}},
            join("\n", @about) if @about;
    }
    return \%help;
}

# read_sections TEXT: what a document in Markdown has for the page, where the help is silent. A
# paragraph behind "<!-- man: exit status -->" is the text of that section, one behind
# "<!-- man: environment NAME -->" that of a variable. A hash with
#   title => [{name => '' or NAME, text => ''}...]
sub read_sections {
    my ($text) = @_;
    my %sections;
    while ($text =~ /^<!-- man: ([a-z ]*[a-z])(?: ([A-Z_]+))? -->\n(.*?)\n(?:\n|\z)/msg) {
        my ($title, $name, $paragraph) = ($1, $2 // '', $3);
        $paragraph =~ s/\[([^\]]*)\]\([^)]*\)/$1/g;
        $paragraph =~ tr/`//d;
        push @{$sections{$title}}, {name => $name, text => $paragraph};
    }
    return \%sections;
}

sub option {
    my ($words, $text) = @_;
    my ($names, $value) = split / /, $words, 2;
    return {forms => [{names => [split /,/, $names], value => $value // '', text => $text}],
            detail => []};
}

1;
