// The string code view: the codes of a piece of text in every form a C programmer pastes into
// source, and the text behind a pasted sequence of codes.
#pragma once

// Owner of the view's texts.
constexpr int kOwnerStringCode = 7110;

// The view's text for `count` units, lines ended by CR LF, as a block the caller frees (null when
// memory ran out). When the whole input is a sequence of codes ("\xB0\xA1", "0xAC00", "\uAC00",
// "U+AC00", or bare hexadecimal "B0 A1" / "AC00" with a digit among them) it shows the text they
// stand for; otherwise each line gives the units in one form: UTF-16, UTF-8, EUC-KR, Johab and
// ready-to-paste C literals, a character the form cannot hold shown as "--" (in a literal as '?')
// and counted.
char* StringCodeText(const char16_t* units, int count);
