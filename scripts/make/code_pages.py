#!/usr/bin/env python3
"""Writes the tables of the single-byte code pages: scripts/make/code_pages.py src/base/CodePageTables.cpp

A byte that a page leaves undefined stands for the control character of the same number, so that every byte survives.
From 0xA0 on no control character has that number, and the letter that has it belongs to another page: there the byte
stands for a private character, U+F700 plus the byte, so that nobody can type it.
Upper case is one character for one within the page; a letter without a single capital there stays.
"""
import codecs
pages=[874]+list(range(1250,1259))
out=[]
out.append('''// Tables of the single-byte code pages, made by scripts/make/code_pages.py. Do not edit.
#include "base/CodePageTables.h"

namespace kd::tables {
''')
names=[]
for p in pages:
    dec=[];
    for b in range(256):
        try: u=ord(bytes([b]).decode('cp%d'%p))
        except UnicodeDecodeError: u=b if b<0xA0 else 0xF700+b
        dec.append(u)
    up=[]
    rev={u:b for b,u in reversed(list(enumerate(dec)))}
    for b in range(256):
        c=chr(dec[b]); U=c.upper()
        if len(U)==1 and ord(U) in rev and c!='\u00b5': up.append(rev[ord(U)])
        else: up.append(b)
    def arr(t,name,a,f):
        s='constexpr std::array<%s, 256> %s{{\n'%(t,name)
        for i in range(0,256,16): s+='    '+', '.join(f%x for x in a[i:i+16])+',\n'
        return s+'}};\n'
    out.append('// clang-format off')
    out.append(arr('char16_t','Decode%d'%p,dec,'0x%04X'))
    out.append(arr('unsigned char','Upper%d'%p,up,'0x%02X')+'// clang-format on\n')
out.append('const std::array<PageTable, %d> Pages{{'%len(pages))
for p in pages: out.append('    {%d, Decode%d, Upper%d},'%(p,p,p))
out.append('}};\n\n}  // namespace kd::tables')
import sys
open(sys.argv[1],'w').write('\n'.join(out)+'\n')
