# Completions for bash and zsh of what help.pm has read, by the templates beside this file.
package completions;

use strict;
use warnings;
use File::Basename;

# completion SHELL NAME HELP
sub completion {
    my ($shell, $name, $help) = @_;
    my $kind = $help->{has_keys} ? 'keys' : 'options';
    my %parts = (NAME => $name,
        $kind eq 'keys' ? key_parts($shell, $help) : option_parts($shell, $name, $help));
    open(my $in, '<', dirname(__FILE__) . "/$kind.$shell.in") or die "$kind.$shell.in: $!\n";
    my $text = join('', <$in>);
    $text =~ s/^( *)\@([A-Z]+)\@\n/join('', map { "$1$_\n" } split "\n", $parts{$2})/gem;
    $text =~ s/\@([A-Z]+)\@/$parts{$1} \/\/ die "\@$1\@ is unknown\n"/ge;
    return $text;
}

sub forms {
    my ($help) = @_;
    return map { @{$_->{forms}} } @{$help->{options}};
}

# Words to choose from: <ERR|WARN>, or "a list of following names" with a line for each.
sub choices {
    my ($option) = @_;
    my @choices = map { $_->{value} =~ /<([^>]*\|[^>]*)>/ ? split(/\|/, $1) : () }
        @{$option->{forms}};
    push @choices, map { /^([A-Z0-9_]{2,})[ (]/ ? $1 : () } @{$option->{detail}}
        if is_list($option);
    return @choices;
}

sub is_list {
    return join(' ', @{$_[0]{detail}}) =~ /list of following names/;
}

# The letters of the keys for which a condition holds, for a pattern [...]; "/" is none's.
sub letters {
    my ($help, $holds) = @_;
    return join('', map { substr($_->{forms}[0]{names}[0], 1, 1) }
        grep { $holds->($_) } @{$help->{options}}) || '/';
}

sub takes {
    my ($pattern) = @_;
    return sub { grep { $_->{value} =~ $pattern } @{$_[0]{forms}} };
}

sub is_hidden {
    return join(' ', @{$_[0]{detail}}) =~ /hidden key/;
}

sub key_parts {
    my ($shell, $help) = @_;
    my @offered = map { @{$_->{forms}} } grep { !is_hidden($_) } @{$help->{options}};
    my %known;
    my @keys = grep { !$known{$_->[0]}++ }
        map { my $form = $_; map { [$_, $form->{text}] } @{$form->{names}} } @offered;
    my @values;
    for my $option (@{$help->{options}}) {
        my @choices = choices($option) or next;
        my $letter = substr($option->{forms}[0]{names}[0], 1, 1);
        push @values, "        $letter) printf '%s\\n' @choices ;;";
    }
    return (
        KEYS => $shell eq 'bash' ? join(' ', map { $_->[0] } @keys)
            : join("\n", map { "        " . quoted(zsh_name($_->[0]) . ":$_->[1]") } @keys),
        VALUES => join("\n", @values),
        TAKERS => letters($help, takes(qr/</)),
        FILES => letters($help, takes(qr/<file-name>/)),
        DIRECTORIES => letters($help, takes(qr/<dir-name>/)),
        LISTS => letters($help, \&is_list));
}

sub quoted {
    my ($text) = @_;
    $text =~ s/'/'\\''/g;
    return "'$text'";
}

sub zsh_name {
    my ($name) = @_;
    $name =~ s/:/\\:/g;
    return $name;
}

# What a program takes beside options, from its usage.
my @operands = (
    [qr/\bBASE NEW\b/, 'folders'],
    [qr/\bPROGRAM \[/, 'program'],
    [qr/\bDIR/, 'folder'],
    [qr/\bFILE/, 'file'],
);
my %bash_operands = (
    folders => "    _filedir -d\n"
        . '    [[ own != "$cur"* ]] || COMPREPLY+=(own)',
    program => '    _command_offset "$cword"',
    folder  => '    _filedir -d',
    file    => '    _filedir',
    none    => '    :',
);
my %zsh_operands = (
    folders => "'1:base:{_files -/; compadd own}' '2:new:{_files -/; compadd own}'",
    program => "'*::program: _normal'",
    folder  => "'*:directory:_files -/'",
    file    => "'*:file:_files'",
    none    => '',
);

sub operand {
    my ($help) = @_;
    my $usage = join("\n", @{$help->{usage}});
    for my $operand (@operands) {
        return $operand->[1] if $usage =~ $operand->[0];
    }
    return 'none';
}

sub has_keys_behind {
    return grep { /-- KEY/ } @{$_[0]{usage}};
}

sub option_parts {
    my ($shell, $name, $help) = @_;
    return $shell eq 'bash' ? bash_options($help) : (OPTIONS => zsh_options($help));
}

# A pattern of the shell; without words one that no word matches.
sub alternatives {
    my ($what, @words) = @_;
    return join(' | ', @words) || "'no $what'";
}

sub bash_options {
    my ($help) = @_;
    my @files = grep { $_->{value} =~ /FILE/ } forms($help);
    my @valued = grep { $_->{value} !~ /FILE|^$/ } forms($help);
    return (
        OPTIONS => join(' ', map { @{$_->{names}} } forms($help)),
        OTHERS => alternatives('others', map { @{$_->{names}} } @valued),
        VALUED => alternatives('values', map { @{$_->{names}} } @files, @valued),
        FILES => alternatives('files', map { @{$_->{names}} } @files),
        OPERANDS => $bash_operands{operand($help)},
        BEHIND => has_keys_behind($help)
            ? "                declare -F _ntkperf >/dev/null || _completion_loader ntkperf\n"
                . "                _ntkperf ntkperf"
            : "                _filedir",
        PROGRAM => operand($help) eq 'program'
            ? join("\n                ", '            *)', '_command_offset "$i"', 'return', ';;')
            : "            *) ;;");
}

# "(-p --precision)"{-p,--precision=}"[text]:PERCENT:"
sub zsh_options {
    my ($help) = @_;
    my @lines;
    for my $form (forms($help)) {
        my @names = @{$form->{names}};
        my $text = $form->{text};
        $text =~ s/([\[\]:])/\\$1/g;
        my $value = $form->{value};
        my $action = $value eq '' ? '' : ":$value:" . ($value =~ /FILE/ ? '_files' : ' ');
        $action =~ s/"|\.\.\.//g;
        my @specs = map { $value eq '' ? $_ : /^--/ ? "$_=" : "$_+" } @names;
        my $repeats = $value =~ /\.\.\./ ? '*' : '';
        my $once = $repeats || '(' . join(' ', @names) . ')';
        push @lines, map { quoted("$once$_\[$text]$action") } @specs;
    }
    push @lines, $zsh_operands{operand($help)} if operand($help) ne 'none';
    push @lines, "'*::key:{ words=(ntkperf \$words) CURRENT=\$((CURRENT+1)); _normal }'"
        if has_keys_behind($help);
    return join(" \\\n", map { "    $_" } @lines);
}

1;
