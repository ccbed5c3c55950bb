// Writes tests/data/regex-cases.json: what JavaScript's RegExp answers for
// every case below, the reference that the engine's regular expressions are
// tested against (EcmaRegexDifferentialTest.cpp, which needs no node).
//
//   node tests/regex/regex-fixtures/generate.mjs
//
// Each case is run as the program runs a search: flags "gm" plus "i" when
// ignoring case. Expected matches come from matchAll, the replacement from
// String.prototype.replace. Positions are counted in characters (code points),
// not in UTF-16 units. A case whose subject (and template) Windows-1252 can
// hold is also run on single-byte text.
//
// `known` marks a case where PCRE2 cannot behave like ECMAScript; the label
// must be one of KNOWN_DIFFERENCES, and the test checks that the case really
// differs (a case that starts to agree must lose its mark).

import { writeFileSync } from "node:fs";
import { dirname, join } from "node:path";
import { fileURLToPath } from "node:url";

export const KNOWN_DIFFERENCES = {
  "captures-not-reset": "a group inside a repeated group keeps its capture from an earlier iteration",
  "empty-iteration": "an iteration of a repeated group that matches nothing is not rejected",
  "lookbehind": "a look-behind must match a fixed length per alternative and runs left to right",
  "astral": "a character beyond U+FFFF is one character, not two UTF-16 units",
  "backref-case-folding": "a case-insensitive back-reference compares by Unicode case folding",
  "repeat-count": "repetition counts above 65535 are refused",
};

// ---------------------------------------------------------------------------
// The cases. A group crosses its patterns with its subjects; `flags` lists
// the ignore-case settings to run ("" and/or "i"); `templates` the
// replacement templates (each a case of its own).

// Line ends of each kind, and the Unicode line and paragraph separators.
const LINE_SUBJECTS = ["a\nb\n\nc\n", "a\r\nb\r\n\r\nc\r\n", "a\rb\r\rc\r", "a\u2028b\u2029c\r\n\n\rd", ""];

const groups = [
  {
    topic: "plain text escaped into a pattern",
    flags: ["", "i"],
    templates: ["[$&]"],
    patterns: ["a\\.b", "C:\\\\temp", "\\(x\\)", "1\\+1", "a\\|b", "\\$5", "\\^", "\\[x\\]", "\\{\\}", "\\*\\?",
      "x-y/z", "\\bcat\\b", "Ab Cd", "naïve café", "\\$1", "Œuvre"],
    subjects: ["a.b axb A.B C:\\temp\\file c:\\TEMP (x) 1+1 a|b $5 $1 ^ [x] {} *? X-Y/Z x-y/z the cat sat; " +
      "concatenate CAT ab cd AB CD Ab Cd NAÏVE CAFÉ naïve café œuvre ŒUVRE Œuvre"],
  },
  {
    topic: "line terminators, ^ and $ (always multi-line)",
    flags: [""],
    templates: ["[$&]"],
    patterns: ["^", "$", "^$", "^.*$", ".", ".+", "^\\w", "\\w$", "c$", "^b", "[^]+", "^\\s*$", "\\r?\\n", "^[^\\r\\n]*",
      "$^", "^(?=b)", "(?<=a)$", ".$", "^."],
    subjects: LINE_SUBJECTS,
  },
  {
    topic: "line terminators with ignore case",
    flags: ["i"],
    templates: ["<$&>"],
    patterns: ["^A", "B$", "^.", ".$"],
    subjects: LINE_SUBJECTS,
  },
  {
    topic: "white space, digits, word characters and boundaries",
    flags: ["", "i"],
    templates: ["<$&>"],
    patterns: ["\\s", "\\S+", "\\v", "[\\s]+", "[^\\s]+", "\\d+", "\\D+", "\\w+", "\\W+", "\\b", "\\B", "\\bé",
      "é\\b", "[\\S\\s]", "[\\d\\W]+", "[^\\D]", "[^\\W\\d]+", "\\f|\\t"],
    subjects: [" \t\u000b\f\u00a0x café 123 naïve_x é\r\n",
      "\u2003y\ufeffz\u3000 ١٢ \u1680\u2000\u200a\u200b\u202f\u205f\u180e K\u212a ſs a\u0085b"],
  },
  {
    topic: "Annex B escapes",
    flags: [""],
    templates: ["{$&}"],
    cases: [
      ["\\1", "\u0001 1"], ["(a)\\1", "aa a\u0001"], ["\\8\\9", "89 \b\t"], ["(a)\\2", "a\u0002"], ["\\400", "  0 \u0100"],
      ["\\07", "\u0007"], ["\\0", "\u0000"], ["\\08", "\u00008"], ["\\012", "\n"], ["\\0123", "\n3"], ["\\377", "\u00ff"],
      ["\\477", "'7"], ["(a)\\10", "a\b a0"], ["\\c", "\\c"], ["\\cJ", "\n"], ["\\cj", "\n"], ["\\c1", "\\c1"],
      ["[\\c1]", "\u0011"], ["[\\c_]", "\u001f"], ["[\\c]+", "\\c"], ["\\c_", "\\c_"], ["\\c*", "\\ccc"],
      ["\\a\\e\\h\\R\\N\\X\\A\\G\\z\\Z\\K\\Q\\E\\g\\o\\p\\P", "aehRNXAGzZKQEgopP"], ["\\q\\y\\i", "qyi"], ["\\-", "-"],
      ["]", "a]b"], ["{", "{"], ["}", "}}"], ["x{1", "x{1"], ["a{,3}", "a{,3} aaa"], ["a{1,", "a{1,"], ["a{1,2", "a{1,2"],
      ["\\u{3}", "uuu u{3}"], ["\\u{1F600}", "u{1F600}"], ["\\x4g", "x4g"], ["\\x4", "x4"], ["\\u12", "u12"],
      ["\\u00", "u00"], ["\\p{L}", "p{L} a"], ["\\k<a>", "k<a>"], ["\\k", "k"], ["\\/", "/"], ["\\ ", " "],
      ["x{2}{", "xx{"], ["[\\8]", "8"], ["[\\1]", "\u0001"], ["[\\00]", "\u0000"], ["[\\B]", "B\\"], ["[\\-]", "-"],
      ["\\1(a)", "a"], ["(a\\1)", "a"], ["[\\b]", "\b"], ["\\b\\x08", "a\b"],
    ],
  },
  {
    topic: "character classes",
    flags: ["", "i"],
    templates: ["<$&>"],
    patterns: ["[^]", "[]", "[]a", "a[]?b", "[[]", "[a[]+", "[\\w-#]+", "[#-\\w]+", "[\\d-z]+", "[a-]+", "[-a]+",
      "[^\\]]+", "[a-c-e]+", "[\\s\\S]", "[^\\d\\s]+", "[\\x41-\\x43]+", "[\\u00e0-\\u00e5]+", "[\\x00-\\x1f]",
      "[.]", "[$^]+", "[*+?{}()|]+", "[\\\\]", "[^a-z]+", "[A-Z]+", "[à-ÿ]+", "[À-Þ]+", "[€-€]", "[‚-„]+",
      "[\\u0100-\\uffff]+", "[\\x80-\\xff]+", "[^\\x00-\\x7f]+", "[z-ſ]+"],
    subjects: ["a-b#c_9 ]x[y z\u0000\u001f ABC abc àáâãäåæ ÀÁÂÃÄÅ $^*+?{}()| .\\ €‚ƒ„…‰ŠŒŽšœžŸ “” ÿ",
      "ſS K\u212a ĀāŁł"],
  },
  {
    topic: "named groups",
    flags: [""],
    cases: [
      ["(?<year>\\d{4})-(?<month>\\d\\d)", "2024-05 and 1999-12", "$<month>/$<year>"],
      ["(?<$x>a)(?<_y>b)", "xaby", "[$<$x>$<_y>]"],
      ["(?<é>.)\\k<é>", "aabb", "<$<é>>"],
      ["(?<a\\u0062>x)", "x", "$<ab>"],
      ["(?<\\u{61}>x)", "x", "$<a>"],
      ["(?<a\\u200C>x)", "x", "[$<a\u200c>]"],
      ["(?<n>a)|(?<m>b)", "ab", "[$<n>|$<m>]"],
      ["(?<n>a)", "xay", "$<n"],
      ["(?<n>a)", "xay", "[$<zz>]"],
      ["(?<n>a)", "xay", "[$<>]"],
      ["(a)", "xay", "[$<n>]"],
      ["\\k<n>(?<n>a)", "aa", "[$<n>]"],
      ["(?<n>a)\\k<n>", "aaa", "[$1$<n>]"],
      ["(?<first>\\w+)\\s(?<last>\\w+)", "Ada Lovelace", "$<last>, $<first>"],
      ["(?<x>b)?a", "ab a", "[$<x>]"],
      ["(?<ThisIsAVeryLongGroupNameOverThirtyTwoChars>z)", "zz", "$<ThisIsAVeryLongGroupNameOverThirtyTwoChars>!"],
      ["(?<g1>a)(?<_g2>b)(?<$>c)(?<g3>d)", "abcd", "$<$>$<g3>$<_g2>$<g1>"],
    ],
  },
  {
    topic: "\\u and \\x escapes",
    flags: ["", "i"],
    templates: ["<$&>"],
    patterns: ["\\u0041", "\\x41", "\\u00e9", "\\u00C9", "\\u20AC", "\\x80", "[\\u20AC]", "\\u0160|\\u0161", "\\u0178",
      "\\xff", "\\x81", "\\u2026+", "\\x0a", "\\u000A"],
    subjects: ["Aa éÉ € Šš Ÿÿ …… \u0081 x\ny", "\u0080"],
  },
  {
    topic: "case-insensitive letters",
    flags: ["", "i"],
    templates: ["<$&>"],
    patterns: ["é", "É", "[é]", "[^é]+", "straße", "ß", "ẞ", "k", "K", "\\u212A", "s", "ſ", "[a-z]+", "[^a-z]+", "Œ", "œuvre",
      "ÿ", "Ÿ", "š", "Ž", "µ", "Μ", "σ", "Σ", "ς", "[\\w]+", "\\W+", "(é)\\1", "([a-z])\\1", "[k-s]+", "[ǅ]", "ǆ", "ı", "İ",
      "i", "[ΐ]", "ΐ", "ﬀ", "[\\u0100-\\u017f]+", "[^\\u0000-\\u00ff]", "(\\S)\\1", "(\\w)\\1+"],
    subjects: ["École ÉCOLE école Straße STRASSE ŒUVRE œuvre Œuvre ÿŸ Šš Žž µ Kk Ss iI éÉ Œœ ŸÿŸ žŽ Aa",
      "straẞe Kelvin \u212a ſ Μμ Σσς İı ǄǅǆDž ΐΪ́ ﬀFF Āā Ŀŀ"],
  },
  {
    topic: "Windows-1252 characters",
    flags: ["", "i"],
    templates: ["[$&]"],
    patterns: ["€|ƒ|Š", "[€ƒŠ]+", "[^€]+", "…", "‘|’|“|”", "™", "[\\u2018-\\u201f]+", "ž\\w", "\\W", "[^\\w\\s]+", "..", "\\x9d|\\u009d",
      "[\\x80-\\x9f]", "[\\u0080-\\u009f]", "[^\\u0000-\\u007f\\u0100-\\uffff]+", "[Ā-￿]+",
      "(?<=(?:\\u0100|\\d))€", "(?<=ĉ)x|(?<=\\s)\\S", "\\u0100?€", "[\\u0100]*\\d", "Ā{0}5"],
    subjects: ["€5 ƒ Š š ‘q’ “Q” … ™ ŽžŸÿ\u009d\u0081 price: 10€, 20 €", "€ \u0080 \u0100"],
  },
  {
    topic: "non-ASCII text and positions",
    flags: ["", "i"],
    templates: ["<$&>"],
    patterns: ["[€é]", "\\w+", ".", "日本", "[日本]+", "^.", ".$", "\\b\\w", "é+", "(.)(.)", "Ω|ω", "[α-ω]+", "ä(?=ö)", "(?<=ä)ö"],
    subjects: ["xé€yé naïve café äöü ÄÖÜ\näö", "日本語 テキスト ΩΜΕΓΑ ωμεγα"],
  },
  {
    topic: "replacement templates",
    flags: [""],
    cases: [
      ["(a)", "xay", "[$10]"], ["(a)", "xay", "[$0|$00|$01|$001]"], ["(a)(b)?", "xaby xay", "[$1|$2]"],
      ["(a)(b)?", "xaby xay", "$&$&"], ["a", "xay", "[$`]"], ["a", "xay", "[$']"], ["a", "xay", "$$"], ["a", "xay", "$"],
      ["a", "xay", "$$$"], ["a", "xay", "$$1"], ["a", "xay", "\\$&\\1\\n"], ["(a)", "xay", "$2$1"], ["(a)", "xay", "$&$'$`"],
      ["(a)(b)(c)(d)(e)(f)(g)(h)(i)(j)(k)", "abcdefghijk", "$11-$10-$1$0-$12-$111-$01"],
      ["(a)(b)(c)(d)(e)(f)(g)(h)(i)(j)", "abcdefghij", "$10|$11|$100"],
      ["(a)?b", "b ab", "[$1]"], ["(x)|b", "ab", "[$1]"], ["a", "aaa", "$`$'"], ["", "abc", "-"], ["|a", "a", "-"],
      ["x*", "abc", "-"], ["\\b", "ab cd", "|"], ["$", "a\nb", "!"], ["^", "a\r\nb\rc", ">"], ["(?:)", "", "e"],
      ["a*", "baaac", "[$&]"], ["a*?", "baa", "[$&]"], ["é", "éé", "$$é"], ["€", "a€b", "[$&|$`|$']"],
      ["(é)(€)", "é€", "$2$1"], ["\\s+", "a \r\n b", "_"],
    ],
  },
  {
    topic: "global matching and empty matches",
    flags: ["", "i"],
    templates: ["[$&]"],
    patterns: ["a*?", "a*", "(?:)", "\\b", "(?=a)", "a|", "|a", "a??", "(a|)", "(?:a|b)*?c", "x?", "^|$"],
    subjects: ["baaac", "", "aAa\r\n", "é€x"],
  },
  {
    topic: "look-arounds",
    flags: ["", "i"],
    templates: ["[$&]"],
    patterns: ["(?<=\\$)\\d+", "(?<!\\d)\\d{2}", "(?<=a|bc)x", "(?=(\\d))\\d", "(?!a)\\w", "x(?=y)", "(?<=^|,)\\w+",
      "\\w+(?=$)", "(?<=(a))b", "(?<!^)x", "(?=a)*b", "(?!x)+a", "(?<=\\bx)y", "(?<=\\r)\\n"],
    subjects: ["$12 $345 a12b ax bcx cx xy xz a,bc,d\ncd xx\nx ab b xy\r\n"],
  },
  {
    topic: "quantifiers, groups and back-references",
    flags: ["", "i"],
    templates: ["[$&|$1|$2]"],
    patterns: ["a+?", "a{2}", "a{2,}", "a{2,3}?", "(ab)+", "a{0}", "(a|ab)(c|bcd)(d*)", "(a)|\\1b", "(a)?\\1b",
      "(a|b)*c", "(\\w)\\1", "(?:a{1,2}){2}", "a{0,0}b", "(a){1,}?", "a{1,99999}", "a{3,3}?", "(?:)+",
      "(a\\1)b", "(a+)+b", "(a|b)*?b"],
    subjects: ["aaab abab abcd aaa aab bab", "xxAA yy acbc"],
  },
  {
    topic: "repeated back-references to a group that did not take part",
    flags: ["", "i"],
    templates: ["[$&|$1]"],
    cases: [["(a)?\\1+x", "x ax aax"], ["(?:(a)|b)\\1{2}", "b aaa"], ["(a)?\\1{2,}?b", "b aaab"],
      ["(a)?\\1+?x", "x"], ["(?<n>a)?\\k<n>{1,3}x", "x aax"], ["(?:(a)|b)\\1*c\\1+", "bc ac"]],
  },
  {
    topic: "patterns ECMAScript refuses",
    flags: [""],
    cases: ["(abc", "abc)", "[abc", "a**", "*a", "+", "?", "{1}", "{1,}", "a{2,1}", "(?i)a", "(?#c)", "a++", "(?>a)",
      "(*ACCEPT)", "(?|a)", "(?P<n>a)", "(?<=a)*", "(?<!a){1}", "^*", "$+", "\\b+", "\\B{2}", "[b-a]", "[z-a]",
      "(?<a>x)(?<a>y)", "(?<a>x)|(?<a>y)", "(?<1a>x)", "(?<>x)", "(?<a>x)\\k", "(?<a>x)\\k<b>", "(?<a>x)[\\k]",
      "\\", "[\\", "a\\", "(?<a", "(?<a>x)\\k<a", "a{1}{2}", "x|*", "(?<—>x)", "(?x)", "(?", "(", ")", "[", "a{3,2}?",
      "a???", "((a)", "(a))", "(?<\\u{1F600}>x)", "(?<a b>x)", "(?<=a)?", "x{2}{3}", "\\k<a>(?<b>x)",
      "[\\uD83D\\uDE00-\\uD83D\\uDE4F]"].map((p) => [p, ""]),
  },
  {
    topic: "known differences",
    flags: [""],
    templates: ["[$&|$1|$2]"],
    cases: [
      ["(?:(a)|b)+", "ab", null, "captures-not-reset"],
      ["(?:(a)|(b))+", "ab", null, "captures-not-reset"],
      ["(?:(x)?y)+", "xyy", null, "captures-not-reset"],
      ["((a)|b)+", "ab", null, "captures-not-reset"],
      ["(\\2(a))+", "aaa", null, "captures-not-reset"],
      ["(a*)+", "aaab", null, "empty-iteration"],
      ["(a*)*", "b", null, "empty-iteration"],
      ["(?:|a)*", "aa", null, "empty-iteration"],
      ["(?:a|())*", "aa", null, "empty-iteration"],
      ["(?<=a+)b", "aab", null, "lookbehind"],
      ["(?<=(\\d+)(\\d+))$", "1053", null, "lookbehind"],
      ["(?<=\\1(a))b", "aab", null, "lookbehind"],
      ["(?<=a?)b", "b", null, "lookbehind"],
      [".", "😀", null, "astral"],
      ["^.$", "😀", null, "astral"],
      ["[😀]", "😀", null, "astral"],
      ["\\uD83D", "😀", null, "astral"],
      ["😀{2}", "😀😀", null, "astral"],
      ["(?:)", "😀", null, "astral"],
      ["(k)\\1", "k\u212a", null, "backref-case-folding", "i"],
      ["(s)\\1", "Sſ", null, "backref-case-folding", "i"],
      ["a{70000}", "a", null, "repeat-count"],
    ],
  },
];

// ---------------------------------------------------------------------------

const CP1252_HIGH = [
  0x20ac, 0x0081, 0x201a, 0x0192, 0x201e, 0x2026, 0x2020, 0x2021, 0x02c6, 0x2030, 0x0160, 0x2039, 0x0152, 0x008d, 0x017d, 0x008f,
  0x0090, 0x2018, 0x2019, 0x201c, 0x201d, 0x2022, 0x2013, 0x2014, 0x02dc, 0x2122, 0x0161, 0x203a, 0x0153, 0x009d, 0x017e, 0x0178,
];

function windows1252CanHold(text) {
  for (const ch of text) {
    const cp = ch.codePointAt(0);
    if (cp < 0x80 || (cp >= 0xa0 && cp <= 0xff)) continue;
    if (!CP1252_HIGH.includes(cp)) return false;
  }
  return true;
}

const codePoints = (s) => [...s].length;
// Lone surrogates (only in the astral known differences) cannot be written as
// JSON that every reader accepts.
const wellFormed = (s) => (s === undefined ? null : s.toWellFormed());

function run(c) {
  let re;
  try {
    re = new RegExp(c.pattern, "gm" + (c.ignoreCase ? "i" : ""));
  } catch (e) {
    return { ...c, error: e.message };
  }
  const matches = [...c.subject.matchAll(re)].map((m) => {
    const match = {
      index: codePoints(c.subject.slice(0, m.index)),
      value: wellFormed(m[0]),
      groups: m.slice(1).map(wellFormed),
    };
    if (m.groups) match.named = Object.fromEntries(Object.entries(m.groups).map(([k, v]) => [k, wellFormed(v)]));
    return match;
  });
  const result = { ...c, matches };
  if (c.template !== undefined) result.replaced = wellFormed(c.subject.replace(re, c.template));
  result.singleByte = windows1252CanHold(c.subject) && windows1252CanHold(c.template ?? "");
  return result;
}

function expand() {
  const cases = [];
  for (const group of groups) {
    const templates = group.templates ?? [undefined];
    const entries = group.cases ?? group.patterns.flatMap((p) => group.subjects.map((s) => [p, s]));
    for (const [pattern, subject, template, known, flags] of entries) {
      for (const flag of flags ? [flags] : group.flags) {
        for (const t of template != null ? [template] : templates) {
          const c = { topic: group.topic, pattern, subject, ignoreCase: flag === "i" };
          if (t !== undefined) c.template = t;
          if (known) {
            if (!(known in KNOWN_DIFFERENCES)) throw new Error(`unknown label ${known}`);
            c.known = known;
          }
          cases.push(c);
        }
      }
    }
  }
  return cases;
}

const cases = expand().map(run);
const unexpectedErrors = cases.filter((c) => c.error && c.topic !== "patterns ECMAScript refuses");
const missingErrors = cases.filter((c) => !c.error && c.topic === "patterns ECMAScript refuses");
if (unexpectedErrors.length || missingErrors.length) {
  for (const c of [...unexpectedErrors, ...missingErrors]) console.error(c.topic, JSON.stringify(c.pattern), c.error);
  throw new Error("a case's pattern was not meant to be refused, or was meant to be");
}

const out = join(dirname(fileURLToPath(import.meta.url)), "..", "..", "data", "regex-cases.json");
const document = {
  generatedBy: "tests/regex/regex-fixtures/generate.mjs",
  node: process.version,
  knownDifferences: KNOWN_DIFFERENCES,
  cases,
};
writeFileSync(out, JSON.stringify(document, null, 0).replace(/\},\{"topic"/g, '},\n{"topic"') + "\n");
const singleByte = cases.filter((c) => c.singleByte).length;
console.log(`${cases.length} cases (${singleByte} also in single-byte text, ` +
  `${cases.filter((c) => c.error).length} refused, ${cases.filter((c) => c.known).length} known differences) -> ${out}`);
