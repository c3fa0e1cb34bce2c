"""usage: guide.py GUIDE.md: the guide as one page of HTML, on standard output."""
import pathlib
import sys

import markdown

STYLE = '''body { max-width: 50em; margin: 2em auto; padding: 0 1em; line-height: 1.6;
  font-family: "Malgun Gothic", "맑은 고딕", sans-serif; }
table { border-collapse: collapse; } td, th { border: 1px solid #bbb; padding: .3em .6em; }
pre, code { background: #f2f2f2; } img { max-width: 100%; }'''

text = pathlib.Path(sys.argv[1]).read_text(encoding='utf-8')
title = text.partition('\n')[0].lstrip('# ')
body = markdown.markdown(text, extensions=['tables'])
print(f'<!DOCTYPE html>\n<html lang="ko"><head><meta charset="utf-8"><title>{title}</title>\n'
      f'<style>{STYLE}</style></head>\n<body>\n{body}\n</body></html>')
