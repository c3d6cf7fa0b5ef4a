#!/usr/bin/env python3
"""Compare the subset headers with facts taken from generated bindings.

  verify.py --export BINDINGS_DIR COMMIT [--mac MACIOS_GIT_DIR]   rebuild facts/ (only what the headers use)
  verify.py [--verbose]                                           compare include/ with facts/ (exit 1 on mismatch)

Needs clang (env CLANG, default clang++) to read the headers; nothing else but the standard library.
"""
import json, os, re, subprocess, sys, tempfile
HERE = os.path.dirname(os.path.abspath(__file__))
INC = os.path.join(HERE, 'include')
FACTS = os.path.join(HERE, 'facts', 'facts.json')
EXTRA = os.path.join(HERE, 'facts', 'manual.json')

PRIM = {  # every scalar name seen on either side -> one canonical spelling
    'bool': 'bool', 'BOOL': 'bool', 'Bool': 'bool', '_Bool': 'bool', 'Boolean': 'u8', 'c_char': 'i8', 'char': 'i8', 'signed char': 'i8',
    'i8': 'i8', 'u8': 'u8', 'c_uchar': 'u8', 'unsigned char': 'u8', 'i16': 'i16', 'u16': 'u16', 'short': 'i16', 'unsigned short': 'u16',
    'c_short': 'i16', 'c_ushort': 'u16', 'i32': 'i32', 'u32': 'u32', 'int': 'i32', 'unsigned int': 'u32', 'c_int': 'i32', 'c_uint': 'u32',
    'i64': 'i64', 'u64': 'u64', 'long': 'i64', 'unsigned long': 'u64', 'long long': 'i64', 'unsigned long long': 'u64', 'c_long': 'i64',
    'c_ulong': 'u64', 'c_longlong': 'i64', 'c_ulonglong': 'u64', 'isize': 'i64', 'usize': 'u64', 'NSInteger': 'i64', 'NSUInteger': 'u64',
    'float': 'f32', 'double': 'f64', 'f32': 'f32', 'f64': 'f64', 'c_float': 'f32', 'c_double': 'f64', 'CGFloat': 'f64', 'void': 'void',
    'c_void': 'void', 'size_t': 'u64', 'intptr_t': 'i64', 'uintptr_t': 'u64', 'pid_t': 'i32', 'uint8_t': 'u8', 'int8_t': 'i8', 'uint16_t': 'u16', 'int16_t': 'i16',
    'uint32_t': 'u32', 'int32_t': 'i32', 'uint64_t': 'u64', 'int64_t': 'i64', 'unichar': 'u16', 'AnyProtocol': 'Protocol',
    # written by hand in the bindings' support crates
    'CFIndex': 'i64', 'CFTypeID': 'u64', 'OSType': 'u32', 'OSStatus': 'i32', 'OptionBits': 'u32', 'ByteCount': 'u64', 'ItemCount': 'u64', 'DispatchTime': 'u64', 'DispatchOnce': 'i64'}
# value types the bindings write by hand in another crate
HANDMADE = {'NSPoint': 'CGPoint', 'NSSize': 'CGSize', 'NSRect': 'CGRect', 'CGPoint': 'CGPoint', 'CGSize': 'CGSize', 'CGRect': 'CGRect', 'NSRange': '_NSRange',
            'CGAffineTransform': 'CGAffineTransform', 'CFRange': 'CFRange', 'NSFastEnumerationState': 'NSFastEnumerationState'}
NN, NU, UN = 'nonnull', 'nullable', 'unspec'

def ty(k, name=None, args=None, n=UN): return {'k': k, 'name': name, 'args': args or [], 'n': n}
def show(t):
    if t is None: return '?'
    m = {'nonnull': '!', 'nullable': '?', 'unspec': ''}[t['n']]
    if t['k'] == 'prim': return t['name']
    if t['k'] == 'ptr': return show(t['args'][0]) + '*' + m
    if t['k'] in ('block', 'fn'): return ('^' if t['k'] == 'block' else 'fn') + show(t['args'][0]) + '(' + ','.join(map(show, t['args'][1:])) + ')' + m
    return t['k'] + ':' + str(t['name']) + ('<' + ','.join(map(show, t['args'])) + '>' if t['args'] else '') + m

# ---------------------------------------------------------------- headers, through clang's AST
def header_ast():
    names = ['AppKit/AppKit.h', 'Carbon/Carbon.h', 'ScreenCaptureKit/ScreenCaptureKit.h', 'Vision/Vision.h', 'UserNotifications/UserNotifications.h',
             'ServiceManagement/ServiceManagement.h', 'AVKit/AVKit.h', 'QuartzCore/QuartzCore.h']
    with tempfile.NamedTemporaryFile('w', suffix='.mm', delete=False) as f:
        f.write(''.join('#include <%s>\n' % n for n in names))
    try:
        cmd = [os.environ.get('CLANG', 'clang++'), '-target', 'arm64-apple-macos99.0', '-nostdlibinc', '-nostdinc++', '-I', INC, '-x', 'objective-c++',
               '-std=c++20', '-fobjc-arc', '-fblocks', '-fsyntax-only', '-w', '-Xclang', '-ast-dump=json', f.name]
        out = subprocess.run(cmd, stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True)
        if out.returncode: sys.exit('headers do not compile:\n' + out.stderr[:3000])
        return json.loads(out.stdout)
    finally: os.unlink(f.name)

class CTypes:
    QUAL = {'const', 'volatile', 'struct', 'enum', 'union', '__kindof', '__strong', '__weak', '__autoreleasing', '__unsafe_unretained', 'class', 'restrict', '__restrict'}
    NUL = {'_Nonnull': NN, '_Nullable': NU, '_Null_unspecified': UN, '_Nullable_result': NU}
    def __init__(self): self.typedefs = {}; self.classes = set(); self.enums = {}; self.structs = set()
    def parse(self, s):
        s = re.sub(r'\b(SINCE|DEPR|CF_BRIDGED|NS_FORMAT_FUNCTION)\([^)]*\)|\b(NS|CF)_[A-Z_]{4,}\b', ' ', s)
        s = re.sub(r'__attribute__\(\((?:[^()]|\([^()]*\))*\)\)', ' ', s)
        self.t = re.findall(r'[A-Za-z_]\w*|\.\.\.|\d+|[<>*^(),\[\]&]', s); self.i = 0
        return self.type()
    def peek(self): return self.t[self.i] if self.i < len(self.t) else None
    def step(self):
        at = self.i; t = self.type()
        if self.i == at: raise ValueError('cannot parse %s at %d' % (self.t, at))
        return t
    def type(self):
        words, args, n = [], [], UN
        while self.peek() and re.match(r'[A-Za-z_.]', self.peek()):
            w = self.t[self.i]; self.i += 1
            if w in self.NUL: n = self.NUL[w]
            elif w not in self.QUAL: words.append(w)
            if self.peek() == '<':
                self.i += 1; args = []
                while self.peek() != '>':
                    if self.peek() == ',': self.i += 1; continue
                    args.append(self.step())
                self.i += 1
        base = ' '.join(words)
        base = {'long unsigned int': 'unsigned long', 'long int': 'long', 'unsigned': 'unsigned int', '__objc_yes': 'bool'}.get(base, base)
        t = self.base(base, args, n)
        while True:
            p = self.peek()
            if p == '*':
                self.i += 1; n = self.quals()
                if t['k'] == 'objpend': t = dict(t, k='obj', n=n)
                elif t['k'] == 'structpend' and t['name'] in ('objc_object',): t = ty('id', n=n)
                elif t['k'] == 'opaque': t = ty('cf', t['name'], n=n)
                else: t = ty('ptr', None, [t], n)
            elif p == '(':
                save = self.i; self.i += 1
                if self.peek() in ('^', '*'):
                    kind = 'block' if self.peek() == '^' else 'fn'; self.i += 1; n = self.quals()
                    assert self.peek() == ')', self.t; self.i += 1
                    t = ty(kind, None, [t] + self.params(), n)
                else: self.i = save; t = ty('fn', None, [t] + self.params(), UN)
            elif p == '[':
                while self.peek() not in (']', None): self.i += 1
                self.i += 1; t = ty('ptr', None, [t], UN)
            else: return t
    def quals(self):
        n = UN
        while self.peek() in self.QUAL or self.peek() in self.NUL:
            n = self.NUL.get(self.peek(), n); self.i += 1
        return n
    def params(self):
        out = []; assert self.peek() == '(', self.t; self.i += 1
        while self.peek() != ')':
            if self.peek() == ',': self.i += 1; continue
            out.append(self.step())
        self.i += 1
        if len(out) == 1 and out[0]['k'] == 'prim' and out[0]['name'] == 'void': out = []
        return out
    def base(self, b, args, n):
        if b == 'id':
            return ty('id', '&'.join(sorted('NSObject' if a['name'] == 'NSObject' else str(a['name']) for a in args)) or None, n=n)
        if b == 'instancetype': return ty('self', n=n)
        if b == 'Class': return ty('class', n=n)
        if b == 'SEL': return ty('sel', n=n)
        if b in ('ObjectType', 'KeyType'): return ty('id', args[0]['name'] if args else None, n=n)
        if b in self.enums: return ty('enum', b, [ty('prim', self.enums[b])])
        if b in PRIM: return ty('prim', PRIM[b])
        if b in self.typedefs:
            save = self.t, self.i
            t = CTypes.parse(self, self.typedefs[b]); self.t, self.i = save
            if t['k'] in ('obj', 'id', 'cf', 'ptr', 'block', 'fn') and n != UN: t = dict(t, n=n)
            t = dict(t); t.setdefault('alias', b)
            return t
        if b in self.classes or b == 'Protocol': return ty('objpend', b, args)
        if b in self.structs: return ty('struct', b)
        if b.startswith('Opaque') or b.startswith('__C') or b.startswith('opaque') or b in ('CGImage', 'CGColorSpace', 'CGContext', 'CGDataProvider', 'CGColor'): return ty('opaque', b)
        return ty('objpend' if b and b[0].isupper() else 'unknown', b, args)

def walk_headers(ast):
    """-> dict of everything declared, with canonical types and the SINCE() written next to it."""
    ct = CTypes(); cur = {'file': None}; texts = {}
    def locs(o):      # files are delta-coded in document order
        if isinstance(o, dict):
            if 'offset' in o:
                if 'file' in o: cur['file'] = o['file']
                o['_file'] = cur['file']
            for k, v in o.items():
                if k != 'includedFrom': locs(v)
        elif isinstance(o, list):
            for v in o: locs(v)
    locs(ast)
    def text(f):
        if f not in texts:
            try: texts[f] = open(f).read()
            except OSError: texts[f] = ''
        return texts[f]
    def avail(node):
        since = dep = unavailable = None
        for a in node.get('inner', []):
            if a.get('kind') == 'UnavailableAttr': unavailable = True
            if a.get('kind') != 'AvailabilityAttr': continue
            b = a['range']['begin']; e = b.get('expansionLoc', b)
            m = re.match(r'(SINCE|DEPR)\(([^)]*)\)', text(e['_file'])[e['offset']:e['offset'] + 200])
            if m:
                p = [x.strip() for x in m.group(2).split(',')]
                since = p[0]
                if m.group(1) == 'DEPR': dep = p[1]
        return since, dep, unavailable
    mine = lambda n: (n.get('loc', {}).get('expansionLoc', n.get('loc', {})).get('_file') or cur_default).startswith(INC)
    cur_default = ''
    D = {'classes': {}, 'protocols': {}, 'functions': {}, 'vars': {}, 'enums': {}, 'consts': {}, 'structs': {}, 'typedefs': {}}
    # pass 1: names
    def pass1(n):
        for c in n.get('inner', []):
            k, nm = c.get('kind'), c.get('name')
            if k == 'LinkageSpecDecl': pass1(c)
            elif k == 'ObjCInterfaceDecl': ct.classes.add(nm)
            elif k == 'TypedefDecl': ct.typedefs[nm] = c['type']['qualType']
            elif k == 'EnumDecl' and nm: ct.enums[nm] = None
            elif k == 'CXXRecordDecl' and nm: ct.structs.add(nm)
    pass1(ast)
    for nm, q in list(ct.typedefs.items()):
        if q in ('struct ' + nm, nm) or q.startswith('struct (unnamed') or 'unnamed struct' in q: ct.structs.add(nm); del ct.typedefs[nm]
        elif q in ('enum ' + nm,): del ct.typedefs[nm]
        elif q.endswith(':' + nm) or nm in ('id', 'Class', 'SEL', 'instancetype'): del ct.typedefs[nm]
    for nm in ('CGImage', 'CGColorSpace', 'CGContext', 'CGDataProvider', 'CGColor'): ct.structs.discard(nm)
    for nm in [s for s in ct.structs if re.match(r'(Opaque|__C|opaque)', s)]: ct.structs.discard(nm)
    ct.structs.discard('objc_object')
    def methods(node, owner, table):
        for c in node.get('inner', []):
            k = c.get('kind')
            if k == 'ObjCMethodDecl' and not c.get('isImplicit'):
                since, dep, un = avail(c)
                s = ('-' if c.get('instance') else '+') + c['name']
                m = {'ret': ct.parse(c['returnType']['qualType']), 'args': [ct.parse(p['type']['qualType']) for p in c.get('inner', []) if p.get('kind') == 'ParmVarDecl'],
                     'since': since, 'dep': dep, 'unavailable': un, 'raw': c['returnType']['qualType']}
                for t, q in [(m['ret'], m['raw'])] + [(a, p['type']['qualType']) for a, p in zip(m['args'], [p for p in c.get('inner', []) if p.get('kind') == 'ParmVarDecl'])]:
                    if t['n'] == UN and t['k'] not in ('prim', 'enum', 'struct', 'self') and '_Nul' not in q: t['n'] = NN   # inside assume_nonnull; a trailing macro hides it
                if s in table and table[s].get('resettable'): m['resettable'] = True
                if s in table and table[s]['since']: m['since'] = table[s]['since']
                if s in table and table[s]['dep']: m['dep'] = table[s]['dep']
                table[s] = m
            elif k == 'ObjCPropertyDecl':
                since, dep, un = avail(c); t = ct.parse(c['type']['qualType'])
                if t['n'] == UN and t['k'] not in ('prim', 'enum', 'struct') and '_Nul' not in c['type']['qualType']:   # a trailing macro hides it: read the text
                    b, e = c['range']['begin'], c['range']['end']
                    t = dict(t, n=NU if re.search(r'\bnullable\b', text(b['_file'])[b['offset']:e.get('expansionLoc', e)['offset']]) else NN)
                cls = '+' if c.get('class') else '-'
                g = c.get('getter', {}).get('name') or c['name']; st = c.get('setter', {}).get('name') or 'set' + c['name'][0].upper() + c['name'][1:] + ':'
                gt, stt = t, t
                if c.get('null_resettable'): gt, stt = dict(t, n=NN), dict(t, n=NU)
                table[cls + g] = {'ret': gt, 'args': [], 'since': since, 'dep': dep, 'unavailable': un, 'prop': c['name'], 'resettable': c.get('null_resettable')}
                if not c.get('readonly'): table[cls + st] = {'ret': ty('prim', 'void'), 'args': [stt], 'since': since, 'dep': dep, 'unavailable': un, 'prop': c['name']}
    def enum(c):
        ut = c.get('fixedUnderlyingType', {}); under = PRIM.get(ut.get('desugaredQualType', ut.get('qualType', '')), None)
        since, dep, _ = avail(c); nm = c.get('name')
        if nm: ct.enums[nm] = under; D['enums'][nm] = {'under': under, 'since': since}
        last = -1
        for e in c.get('inner', []):
            if e.get('kind') != 'EnumConstantDecl': continue
            v = find_value(e); v = last + 1 if v is None else v; last = v
            D['consts'][e['name']] = {'value': v, 'enum': nm, 'since': avail(e)[0]}
    def find_value(n):
        for c in n.get('inner', []):
            if c.get('kind') in ('AvailabilityAttr', 'DeprecatedAttr'): continue
            if 'value' in c and c.get('kind') in ('ConstantExpr', 'IntegerLiteral', 'CharacterLiteral'): return int(c['value'])
            v = find_value(c)
            if v is not None: return v
        return None
    def pre(n):
        for c in n.get('inner', []):
            if c.get('kind') == 'LinkageSpecDecl': pre(c)
            elif c.get('kind') == 'EnumDecl' and c.get('inner'): enum(c)
    pre(ast)
    def pass2(n):
        for c in n.get('inner', []):
            k, nm = c.get('kind'), c.get('name')
            if k == 'LinkageSpecDecl': pass2(c); continue
            if k == 'ObjCInterfaceDecl' and (c.get('inner') or c.get('super')):
                since, dep, un = avail(c)
                if nm in D['classes'] and since: D['classes'][nm]['since'] = since
                e = D['classes'].setdefault(nm, {'super': c.get('super', {}).get('name'), 'since': since, 'm': {}, 'protocols': [p['name'] for p in c.get('protocols', [])]})
                methods(c, nm, e['m'])
            elif k == 'ObjCCategoryDecl':
                e = D['classes'].setdefault(c['interface']['name'], {'super': None, 'since': None, 'm': {}, 'protocols': []})
                methods(c, nm, e['m'])
                e['protocols'] += [p['name'] for p in c.get('protocols', [])]
            elif k == 'ObjCProtocolDecl' and c.get('inner'):
                e = D['protocols'].setdefault(nm, {'m': {}}); methods(c, nm, e['m'])
            elif k == 'FunctionDecl' and nm and not nm.startswith('__builtin'):
                since, dep, un = avail(c); q = c['type']['qualType']
                ret = q[:q.index('(')] if not re.search(r'\((\^|\*)', q.split('(')[0] + '(') else q
                ps = [p for p in c.get('inner', []) if p.get('kind') == 'ParmVarDecl']
                body = any(p.get('kind') == 'CompoundStmt' for p in c.get('inner', []))
                D['functions'][nm] = {'ret': ct.parse(ret), 'args': [ct.parse(p['type']['qualType']) for p in ps], 'since': since, 'dep': dep, 'inline': body}
            elif k == 'VarDecl' and nm:
                v = find_value(c)
                t = ct.parse(c['type']['qualType'])
                if t['n'] == UN and 'SINCE' in c['type']['qualType']: t = dict(t, n=NN)
                D['vars'][nm] = {'type': t, 'since': avail(c)[0]}
                if v is not None: D['vars'][nm]['value'] = v
            elif k == 'CXXRecordDecl' and c.get('inner'):
                f = [(x['name'], ct.parse(x['type']['qualType'])) for x in c['inner'] if x.get('kind') == 'FieldDecl']
                if f and nm: D['structs'][nm] = f
    # values of static consts are written in the AST without the sign: read them from the text
    pass2(ast)
    # anonymous structs behind typedefs
    def anon(n):
        prev = None
        for c in n.get('inner', []):
            if c.get('kind') == 'LinkageSpecDecl': anon(c)
            if c.get('kind') == 'CXXRecordDecl' and not c.get('name'): prev = c
            elif c.get('kind') == 'TypedefDecl' and prev is not None:
                f = [(x['name'], ct.parse(x['type']['qualType'])) for x in prev.get('inner', []) if x.get('kind') == 'FieldDecl']
                if f: D['structs'][c['name']] = f
                prev = None
    anon(ast)
    D['typedefs'] = {}
    for nm in ct.typedefs:
        try: D['typedefs'][nm] = ct.parse(ct.typedefs[nm])
        except Exception: pass
    return D

# ---------------------------------------------------------------- bindings
class Rust:
    def __init__(self, root):
        self.root = root; self.classes = {}; self.protocols = {}; self.funcs = {}; self.statics = {}; self.consts = {}; self.enums = {}
        self.aliases = {}; self.structs = {}; self.cf = set(); self.cat = {}; self.opaque = set(); self.main = set()
        for d, _, fs in os.walk(root):
            for f in sorted(fs):
                if f.endswith('.rs'): self.scan(os.path.join(d, f))
    @staticmethod
    def clean(s): return re.sub(r'//[^\n]*', '', s)
    def scan(self, path):
        rel = os.path.relpath(path, self.root); raw = open(path).read(); s = self.clean(raw)
        for m in re.finditer(r'^\s*unsafe impl(?:<[^{;>]*>)?\s+(\w+)(?:<[^{;>]*>)? for (\w+)', s, re.M): self.cat.setdefault(m.group(1), set()).add(m.group(2))
        for m in re.finditer(r'extern_class!\(([^;{]*?)pub struct (\w+)', s):
            sup = re.search(r'super\(\s*(\w+)', m.group(1))
            c = self.classes.setdefault(m.group(2), {'m': {}})
            c['super'] = sup.group(1) if sup else None; c['file'] = rel
            if 'MainThreadOnly' in m.group(1): self.main.add(m.group(2))
        for m in re.finditer(r'cf_type!\(\s*(?:#\[[^\]]*\]\s*)*unsafe impl(?:<[^{>]*>)?\s+(\w+)', s): self.cf.add(m.group(1))
        for m in re.finditer(r'pub struct (\w+)\s*\{\s*inner: \[u8; 0\]', s): self.opaque.add(m.group(1))
        for m in re.finditer(r'pub struct (\w+)\(pub ([\w:]+)\);', s): self.enums[m.group(1)] = (m.group(2), rel)
        for m in re.finditer(r'pub type (\w+)(?:<[^=]*>)?\s*=\s*([^;]+);', s): self.aliases.setdefault(m.group(1), (m.group(2).strip(), rel))
        for m in re.finditer(r'pub struct (\w+)\s*\{([^{}]*)\}', s):
            f = re.findall(r'(?:pub(?:\(crate\))? )?\b(\w+): ([^,]+),', re.sub(r'#\[[^\]]*\]', '', m.group(2)))
            if f: self.structs[m.group(1)] = ([(a, b.strip()) for a, b in f], rel)
        for m in re.finditer(r'pub static (\w+):\s*([^;]+);', s): self.statics[m.group(1)] = (m.group(2).strip(), rel)
        for m in re.finditer(r'pub const (\w+):\s*([\w:]+)\s*=\s*([^;]+);', s):
            if m.group(2) != 'Self': self.consts.setdefault(m.group(1), (m.group(2), m.group(3).strip(), None, rel))
        ectx = None
        for m in re.finditer(r'^impl (\w+) \{|impl (\w+): \w+ \{|#\[doc\(alias = "(\w+)"\)\]\s*(?:#\[[^\]]*\]\s*)*(?:pub )?const (\w+)(?::\s*Self)?\s*=\s*([^;]+);', s, re.M):
            if m.group(1) or m.group(2): ectx = m.group(1) or m.group(2)
            else: self.consts[m.group(3)] = (ectx, m.group(5).strip(), ectx, rel); self.consts.setdefault('%s::%s' % (ectx, m.group(4)), self.consts[m.group(3)])
        for m in re.finditer(r'extern "C(?:-unwind)?" \{(.*?)\n\s*\}', s, re.S):
            for f in re.finditer(r'\bfn (\w+)\((.*?)\)\s*(?:->\s*([^;]+))?;', m.group(1), re.S): self.funcs.setdefault(f.group(1), (f.group(2), (f.group(3) or '()').strip(), rel))
        # methods
        ctx = None
        pat = re.compile(r'^impl(?:<(?:[^<>]|<[^<>]*>)*>)?\s+(\w+)|^\s*pub unsafe trait (\w+)|#\[unsafe\(method\(([^()]*)\)\)\]', re.M)
        for m in pat.finditer(s):
            if m.group(1): ctx = ('c', m.group(1)); continue
            if m.group(2): ctx = ('p', m.group(2)); continue
            sel = m.group(3).strip()
            f = re.compile(r'fn\s+(?:r#)?\w+\s*(?:<[^(]*>)?\(').search(s, m.end())
            i = f.end(); depth = 1
            while depth: depth += {'(': 1, ')': -1}.get(s[i], 0); i += 1
            args = s[f.end():i - 1]; end = i
            d2 = 0
            while True:
                ch = s[end]
                if ch in '(<[{' : d2 += 1
                elif ch in ')]}' or (ch == '>' and s[end - 1] != '-'): d2 -= 1
                elif ch == ';' and d2 <= 0: break
                end += 1
            r = s[i:end].strip(); r = re.split(r'\bwhere\b', r)[0].strip()
            ret = r[2:].strip() if r.startswith('->') else '()'
            back = s[max(0, s.rfind(';', 0, m.start())):m.start()]
            e = {'args': args, 'ret': ret, 'file': rel, 'dep': '#[deprecated' in back, 'optional': '#[optional]' in back}
            a0 = args.strip(); inst = a0.startswith('&self') or a0.startswith('self') or a0.startswith('this:') or 'this: Allocated' in args
            table = (self.classes if ctx[0] == 'c' else self.protocols).setdefault(ctx[1], {'m': {}, 'super': None, 'file': rel})['m']
            table[('-' if inst else '+') + sel] = e
    # type text -> canonical
    def parse(self, s):
        s = re.sub(r"'static|'_|'a", ' ', s)
        self.t = re.findall(r'->|"[^"]*"|[A-Za-z_]\w*|::|\d+|[&*<>(),;\[\]+?:]', s); self.i = 0
        return self.type()
    def pk(self): return self.t[self.i] if self.i < len(self.t) else None
    def step(self):
        at = self.i; t = self.type()
        if self.i == at or self.i > len(self.t): raise ValueError('cannot parse %s at %d' % (self.t, at))
        return t
    def eat(self, x): assert self.pk() == x, (self.t, self.i, x); self.i += 1
    def arglist(self):
        out = []; self.eat('(')
        while self.pk() != ')':
            if self.pk() == ',': self.i += 1; continue
            if re.match(r'[a-z_]', self.pk() or '') and self.i + 1 < len(self.t) and self.t[self.i + 1] == ':': self.i += 2
            out.append(self.step())
        self.eat(')'); return out
    def fnty(self, kind):
        a = self.arglist(); r = ty('prim', 'void')
        if self.pk() == '->': self.i += 1; r = self.type()
        while self.pk() == '+': self.i += 2
        return ty(kind, None, [r] + a)
    def type(self):
        p = self.pk()
        if p == '(':
            self.i += 1
            if self.pk() == ')': self.i += 1; return ty('prim', 'void')
            t = self.type(); self.eat(')'); return t
        if p == '&':
            self.i += 1; mut = False
            if self.pk() == 'mut': self.i += 1; mut = True
            return self.pointer(self.type(), NN, mut)
        if p == '*':
            self.i += 2; return self.pointer(self.type(), UN, True)
        if p == '[':
            self.i += 1; t = self.type()
            while self.pk() not in (']', None): self.i += 1
            self.i += 1; return ty('ptr', None, [t], UN)
        if p == '?': self.i += 2; return ty('prim', 'void')
        if p in ('unsafe', 'extern') or (p and p.startswith('"')): self.i += 1; return self.type()
        if p == 'fn': self.i += 1; return self.fnty('fn')
        if p == 'dyn': self.i += 1; return self.type()
        if p == '_': self.i += 1; return ty('prim', 'void')
        name = p; self.i += 1
        while self.pk() == '::': name = self.t[self.i + 1]; self.i += 2
        if name in ('Fn', 'FnOnce'): return self.fnty('fn')
        args = []
        if self.pk() == '<':
            self.i += 1
            while self.pk() != '>':
                if self.pk() in (',', ';'): self.i += 1; continue
                args.append(self.step())
            self.i += 1
        return self.named(name, args)
    def pointer(self, t, n, mut):
        if t['k'] == 'blk': return dict(t, k='block', n=n)
        if t['k'] == 'objpend' and t['name'] != 'CStr': return dict(t, k='obj', n=n)
        if t['k'] == 'anyobj': return ty('id', t['name'], n=n)
        if t['k'] == 'anyclass': return ty('class', n=n)
        if t['k'] == 'opaque': return ty('cf', t['name'], n=n)
        if t['name'] == 'CStr': return ty('ptr', None, [ty('prim', 'i8')], n)
        return ty('ptr', None, [t], n)
    def named(self, name, args):
        if name in HANDMADE: return ty('struct', HANDMADE[name])
        if name == 'Option':
            t = args[0]; return dict(t, n=NU) if t['k'] not in ('prim', 'enum', 'struct') else t
        if name in ('Retained', 'CFRetained', 'DispatchRetained', 'NonNull'): return self.pointer(args[0], NN, False)
        if name == 'Allocated': return ty('self')
        if name == 'Self': return ty('objpend', 'Self')
        if name in ('DynBlock', 'Block', 'SendableBlock', 'RcBlock'): return dict(args[-1], k='blk')
        if name == 'Result': return ty('result', None, args[:1])
        if name in ('AnyObject', 'CFType') : return ty('anyobj') if name == 'AnyObject' else ty('opaque', 'CFType')
        if name == 'ProtocolObject':
            return ty('anyobj', {'NSObjectProtocol': 'NSObject'}.get(args[0]['name'], args[0]['name']))
        if name == 'AnyClass': return ty('anyclass')
        if name == 'AnyProtocol': return ty('objpend', 'Protocol')
        if name == 'Sel': return ty('sel', n=NN)
        if name in ('UnsafeCell', 'MaybeUninit', 'PhantomData') and args: return args[0]
        if name in self.enums: return ty('enum', name, [ty('prim', PRIM.get(self.resolve(self.enums[name][0]), self.enums[name][0]))])
        if name in PRIM: return ty('prim', PRIM[name])
        if name in self.cf or name in self.opaque: return ty('opaque', name)
        if name in self.classes and self.classes[name].get('file'): return ty('objpend', name, [self.strip(a) for a in args])
        if name in self.aliases:
            save = self.t, self.i; t = self.parse(self.aliases[name][0]); self.t, self.i = save
            return dict(t, alias=name)
        if name in self.structs: return ty('struct', name)
        if name in ('ObjectType', 'KeyType'): return ty('anyobj')
        if name in HANDMADE: return ty('struct', HANDMADE[name])
        if name == 'CStr': return ty('objpend', 'CStr')
        return ty('objpend', name, args)
    def resolve(self, n):
        while n in self.aliases: n = self.aliases[n][0]
        return n
    @staticmethod
    def strip(a): return dict(a, k={'objpend': 'obj', 'anyobj': 'id', 'blk': 'block', 'opaque': 'cf'}.get(a['k'], a['k']))
    def method(self, e, sel):
        args = []
        self.t = re.findall(r'->|"[^"]*"|[A-Za-z_]\w*|::|\d+|[&*<>(),;\[\]+?:]', re.sub(r"'static|'_|'a|r#", ' ', '(' + e['args'] + ')')); self.i = 1
        while self.pk() != ')':
            if self.pk() == ',': self.i += 1; continue
            if self.pk() == '&' and self.t[self.i + 1] == 'self': self.i += 2; continue
            if self.pk() == 'self': self.i += 1; continue
            nm = self.pk(); self.i += 1; self.eat(':'); t = self.type()
            if nm == 'this' or t.get('name') == 'MainThreadMarker': continue
            args.append(self.fin(t))
        ret = self.fin(self.parse(e['ret']))
        if sel.endswith('_'):
            sel = sel[:-1]; args.append(ty('ptr', None, [ty('obj', 'NSError', n=NU)], NU))
            inner = ret['args'][0] if ret['k'] == 'result' else ret
            ret = ty('prim', 'bool') if inner['k'] == 'prim' and inner['name'] == 'void' else dict(inner, n=NU)
        return sel, {'args': args, 'ret': ret, 'file': e['file'], 'dep': e['dep'], 'optional': e['optional']}
    def fin(self, t): return self.strip(t)
    def value(self, expr, ctx, depth=0):
        if depth > 20: return None
        e = re.sub(r'Self\(((?:[^()]|\([^()]*\))*)\)', r'(\1)', expr)
        e = re.sub(r'\bas \w+', '', e).replace('.bits()', '').replace('.0', '')
        def rep(m):
            w = m.group(0)
            if re.match(r'^(0x[0-9a-fA-F_]+|\d[\d_]*)(?:u32|u64|i32|usize|isize)?$', w): return w
            key = w.replace('Self::', (ctx or '') + '::')
            if w == 'NSUIntegerMax': return str((1 << 64) - 1)
            c = self.consts.get(key) or self.consts.get(w.split('::')[-1])
            if not c: raise KeyError(w)
            v = self.value(c[1], c[2], depth + 1)
            if v is None: raise KeyError(w)
            return str(v)
        try:
            e = re.sub(r'0x[0-9a-fA-F_]+|[A-Za-z_][\w:]*|\d[\d_]*', rep, e).replace('!', '~')
            return int(eval(e, {'__builtins__': {}}))
        except Exception: return None

# ---------------------------------------------------------------- .NET bindings: availability only
def mac_versions(gitdir):
    run = lambda *a: subprocess.run(['git', '--git-dir=' + gitdir] + list(a), stdout=subprocess.PIPE, text=True).stdout
    commit = run('rev-parse', 'HEAD').strip(); out = {}; enums = {}
    files = [f for f in run('ls-tree', '-r', '--name-only', 'HEAD', 'src').split() if re.match(r'src/(appkit|foundation|screencapturekit|vision|servicemanagement|usernotifications|avfoundation|avkit|coremedia)\.cs$', f)
             or re.match(r'src/(AppKit|Vision|ScreenCaptureKit|ServiceManagement|UserNotifications|AVFoundation|AVKit|CoreGraphics|Foundation)/(\w*Enums?|CGEventTypes|CGEvent)\.cs$', f)]
    ver = lambda a: (re.findall(r'\bMac\s*\(\s*(\d+)\s*,\s*(\d+)', a) or [None])[-1]
    for f in files:
        s = run('show', 'HEAD:' + f); cls = None; cv = None; attrs = ''
        for ln in s.split('\n'):
            l = ln.strip()
            if l.startswith('//'): continue
            m = re.match(r'(?:public |internal |partial |static |sealed |abstract )*(interface|class|enum)\s+(\w+)', l)
            if m:
                cls = m.group(2); cv = ver(attrs); bt = re.search(r'BaseType\s*\(.*?Name\s*=\s*"(\w+)"', attrs); pr = re.search(r'Protocol\s*\(.*?Name\s*=\s*"(\w+)"', attrs)
                names = {cls, bt.group(1) if bt else cls, pr.group(1) if pr else cls}
                cls = names
                for n in names: enums.setdefault(n, {'v': cv, 'file': f})
                attrs = ''; continue
            if l.startswith('['): attrs += ' ' + l
            e = re.search(r'Export\s*\(\s*"([^"]+)"', attrs)
            if e and not l.startswith('[') and l and not l.startswith('#'):
                st = '+' if re.search(r'\bStatic\b', attrs) else '-'; v = ver(attrs) or cv
                binds = re.findall(r'Bind\s*\(\s*"([^"]+)"', l); sels = {e.group(1)} | set(binds)
                if 'set' in l and ':' not in e.group(1): sels.add('set' + e.group(1)[0].upper() + e.group(1)[1:] + ':')
                for c in cls or ():
                    for x in sels: out.setdefault(c, {})[st + x] = {'v': '.'.join(v) if v else None, 'own': bool(ver(attrs)), 'file': f}
                attrs = ''
            elif l and not l.startswith('['): attrs = ''
    return commit, out, {k: {'v': '.'.join(v['v']) if v['v'] else None, 'file': v['file']} for k, v in enums.items()}

# ---------------------------------------------------------------- export
def export(root, commit, macgit):
    D = walk_headers(header_ast()); R = Rust(root)
    F = {'source': {'bindings': 'objc2-generated@' + commit}, 'classes': {}, 'protocols': {}, 'functions': {}, 'vars': {}, 'consts': {}, 'enums': {}, 'structs': {}, 'aliases': {}}
    def table(names):
        out = {}
        for n in names:
            src = R.classes.get(n) or R.protocols.get(n)
            if not src: continue
            for s, e in src['m'].items():
                try: k, v = R.method(e, s)
                except Exception as x: k, v = s.rstrip('_'), {'error': str(x)[:80], 'file': e['file']}
                out[k] = v
        return out
    def chain(c):
        seen = []
        while c and c not in seen:
            seen.append(c); c = (R.classes.get(c) or {}).get('super')
        return seen
    conf = lambda c: [p for p, cl in R.cat.items() if c in cl]
    for c, d in D['classes'].items():
        own = table([c]); rest = {}
        for a in chain(c)[1:]:
            for k, v in table([a] + conf(a)).items(): rest.setdefault(k, dict(v, inherited=a))
        for k, v in table(conf(c)).items(): own.setdefault(k, v)
        keep = {}
        for s in d['m']:
            if s in own: keep[s] = own[s]
            elif s in rest: keep[s] = rest[s]
            elif s[1:] in ('new', 'init') : pass
        info = R.classes.get(c, {})
        if info.get('file'): F['classes'][c] = {'super': info.get('super'), 'file': info['file'], 'main': c in R.main, 'm': keep}
        elif keep: F['classes'][c] = {'super': None, 'file': None, 'm': keep}
    for p, d in D['protocols'].items():
        rp = {'NSObject': 'NSObjectProtocol'}.get(p, p); t = table([rp])
        if t or rp in R.protocols: F['protocols'][p] = {'m': {s: t[s] for s in d['m'] if s in t}}
    for f in D['functions']:
        if f in R.funcs:
            a, r, rel = R.funcs[f]; R.t = None
            e = {'args': '', 'ret': r, 'file': rel, 'dep': False, 'optional': False}; e['args'] = a
            try: F['functions'][f] = {k: v for k, v in R.method(e, f)[1].items() if k in ('args', 'ret', 'file')}
            except Exception as x: F['functions'][f] = {'error': str(x)[:80], 'file': rel}
    for v in D['vars']:
        if v in R.statics: F['vars'][v] = {'type': R.fin(R.parse(R.statics[v][0])), 'file': R.statics[v][1]}
        elif v in R.consts: c = R.consts[v]; F['vars'][v] = {'value': R.value(c[1], c[2]), 'file': c[3]}
    for c in D['consts']:
        if c in R.consts: x = R.consts[c]; F['consts'][c] = {'value': R.value(x[1], x[2]), 'enum': x[2], 'file': x[3]}
        elif c in R.statics and '=' in R.statics[c][0]: F['consts'][c] = {'value': R.value(R.statics[c][0].split('=')[1].strip().split('(')[-1].rstrip(')'), None), 'enum': None, 'file': R.statics[c][1]}
        elif c in R.statics: F['consts'][c] = {'static': R.statics[c][0], 'file': R.statics[c][1]}
    for e in D['enums']:
        if e in R.enums: F['enums'][e] = {'under': PRIM.get(R.resolve(R.enums[e][0]), R.enums[e][0]), 'file': R.enums[e][1]}
    for s in D['structs']:
        if s in R.structs:
            try: F['structs'][s] = {'fields': [[a, R.fin(R.parse(b))] for a, b in R.structs[s][0]], 'file': R.structs[s][1]}
            except Exception as x: pass
    for t in D['typedefs']:
        if t in R.aliases:
            try: F['aliases'][t] = {'type': R.fin(R.parse(R.aliases[t][0])), 'file': R.aliases[t][1]}
            except Exception: pass
    if macgit:
        mc, mv, me = mac_versions(macgit); F['source']['availability'] = 'dotnet/macios@' + mc
        A = {}
        for grp in ('classes', 'protocols'):
            for c, d in D[grp].items():
                if c in me: A.setdefault(c, {})['*'] = me[c]['v']
                sup = c
                for s in d['m']:
                    if s in mv.get(c, {}): A.setdefault(c, {})[s] = mv[c][s]['v']
        for e in D['enums']:
            if e in me: A.setdefault(e, {})['*'] = me[e]['v']
        F['availability'] = A
        # what the first source lacks, looked up in the second: name of the selector on that class, or of an imported C function
        second = {}
        for grp, sig in (('classes', ''), ('protocols', 'protocol ')):
            for c, d in D[grp].items():
                for x in d['m']:
                    if x not in F[grp].get(c, {}).get('m', {}) and x in mv.get(c, {}): second[sig + '%s[%s %s]' % (x[0], c, x[1:])] = mv[c][x]['file']
        want = [f for f in D['functions'] if f not in F['functions']]
        out = subprocess.run(['git', '--git-dir=' + macgit, 'grep', '-hoE', r'extern [^;]*\b(%s) ?\(' % '|'.join(want), 'HEAD', '--', 'src'], stdout=subprocess.PIPE, text=True).stdout
        for f in want:
            if re.search(r'\b%s ?\(' % f, out): second['function ' + f] = 'imported C function'
        F['second'] = second
    os.makedirs(os.path.dirname(FACTS), exist_ok=True)
    def compact(o):   # a type becomes [kind, name, nullability, arguments...]; empty parts go
        if isinstance(o, dict) and 'k' in o: return [o['k'], o.get('name') or 0, [NN, NU, UN].index(o.get('n', UN))] + [compact(a) for a in o.get('args', [])]
        if isinstance(o, dict): return {k: compact(v) for k, v in o.items() if not (k in ('dep', 'optional', 'main', 'args') and not v)}
        return [compact(x) for x in o] if isinstance(o, list) else o
    for c in list(F['classes'].values()) + list(F['protocols'].values()):
        for m in c['m'].values():
            if m.get('file') == c.get('file'): m.pop('file', None)
    types, index = [], {}
    def intern(t):    # each distinct type is written once
        t = json.dumps(compact(t)); index.setdefault(t, len(types))
        if index[t] == len(types): types.append(json.loads(t))
        return index[t]
    for c in list(F['classes'].values()) + list(F['protocols'].values()) + [{'m': F['functions']}]:
        for m in c['m'].values():
            if 'ret' in m: m['sig'] = [intern(m.pop('ret'))] + [intern(a) for a in m.pop('args')]
    F['types'] = types
    # availability sits next to the selector: a version, or 0 for "listed without one"
    for c, a in F.get('availability', {}).items():
        for grp in ('classes', 'protocols'):
            for x in [x for x in a if x in F[grp].get(c, {}).get('m', {})]: F[grp][c]['m'][x]['mac'] = a.pop(x) or 0
    F.pop('aliases')
    meth = [m for g in ('classes', 'protocols') for c in F[g].values() for m in c['m'].values() if m.get('file')]
    files = sorted({m['file'] for m in meth} | {e['file'] for g in ('functions', 'vars', 'consts', 'enums', 'structs') for e in F[g].values() if e.get('file')})
    for m in meth: m['file'] = files.index(m['file'])
    for g in ('functions', 'vars', 'consts', 'enums', 'structs'):
        for e in F[g].values():
            if e.get('file'): e['file'] = files.index(e['file'])
    F['files'] = files
    F['consts'] = {k: [v.get('value'), v.get('enum') or 0, v['file']] for k, v in F['consts'].items()}
    open(FACTS, 'w').write(json.dumps(compact(F), separators=(',', ':'), sort_keys=True).replace('},"', '},\n"') + '\n')
    print('facts written:', FACTS, os.path.getsize(FACTS), 'bytes')

# ---------------------------------------------------------------- compare
CFNAME = lambda n: re.sub(r'^(__|opaque)', '', n or '')
def full(t):
    if isinstance(t, list): return {'k': t[0], 'name': t[1] or None, 'n': [NN, NU, UN][t[2]], 'args': [full(a) for a in t[3:]], 'alias': None}
    if isinstance(t, dict) and 'k' in t: return {'k': t['k'], 'name': t.get('name'), 'args': [full(a) for a in t.get('args', [])], 'n': t.get('n', UN), 'alias': t.get('alias')}
    return t
def cmp(h, f, cls, why, ret=False):
    """header type against fact type; appends reasons."""
    h, f = full(h), full(f)
    def bad(x): why.append('%s: header %s, source %s' % (x, show(h), show(f)))
    scal = lambda t: t['name'] if t['k'] == 'prim' else t['args'][0]['name'] if t['k'] == 'enum' else None
    if h['k'] == 'objpend': h['k'] = 'obj'
    if f['k'] == 'objpend': f['k'] = 'obj'
    if f['k'] == 'struct' and h['k'] == 'struct':
        return None if h['name'] == f['name'] or (h['name'], f['name']) in (('_NSRange', 'NSRange'), ('NSRange', '_NSRange')) else bad('struct')
    if scal(h) or scal(f):
        if h['k'] == 'enum' and f['k'] == 'enum' and h['name'] != f['name']: return bad('enum')
        if scal(h) != scal(f): return bad('scalar')
        return
    # the bindings write "Self" or the class for instancetype
    if h['k'] == 'self' or (f['k'] == 'obj' and f['name'] == 'Self'):
        if not (h['k'] == 'self' and f['k'] in ('obj', 'id')) and not (h['k'] == 'obj' and (h['name'] == cls or True) and f['name'] == 'Self'): return bad('instancetype')
    elif h['k'] == 'cf' and f['k'] == 'cf':
        a, b = CFNAME(h['name']), CFNAME(f['name'])
        alias = {'CMSampleBuffer': 'CMSampleBuffer', 'CVBuffer': 'CVBuffer'}
        if a != b and not (a in ('CVBuffer',) and b in ('CVImageBuffer', 'CVPixelBuffer')): bad('cf type')
    elif h['k'] == 'ptr' and h['args'] and h['args'][0]['k'] == 'prim' and h['args'][0]['name'] == 'void' and f['k'] == 'cf' and f['name'] == 'CFType': pass
    elif h['k'] == 'id' and f['k'] == 'id':
        if (h['name'] or None) != (f['name'] or None) and not (h.get('key') and f['name'] == 'NSCopying'): bad('protocol')
    elif h['k'] == 'id' and f['k'] == 'obj' and f['name'] in ('ObjectType', 'KeyType', 'AnyObject'): pass
    elif h['k'] == 'obj' and h['name'] == 'NSObject' and f['k'] == 'cf' and f['name'].startswith('Dispatch') and h['args']:
        if h['args'][0]['name'].replace('OS_', '').replace('_', '') != f['name'].lower(): bad('dispatch type')
    elif h['k'] == 'ptr' and f['k'] == 'obj' and f['name'] in PRIM: pass      # pointer to a hand-written scalar
    elif h['k'] == 'ptr' and f['k'] == 'obj' and HANDMADE.get(f['name']) == h['args'][0]['name']: pass
    elif h['k'] != f['k']: return bad('kind')
    elif h['k'] == 'obj':
        if h['name'] != f['name']: bad('class')
        elif h['args'] and f['args'] and len(h['args']) == len(f['args']):
            for a, b in zip(h['args'], f['args']): cmp(dict(a, n=UN), dict(full(b), n=UN), cls, why)
        elif h['args'] and not f['args']: bad('generic arguments')
    elif h['k'] == 'ptr': cmp(h['args'][0], f['args'][0], cls, why)
    elif h['k'] in ('block', 'fn'):
        if len(h['args']) != len(f['args']): return bad('parameter count')
        for a, b in zip(h['args'], f['args']):
            cmp(a, b, cls, why); fb = full(b)     # in a block a possibly-null pointer is written *mut, a nonnull one NonNull
            if h['k'] == 'block' and full(a)['n'] == NN and fb['n'] == UN and fb['k'] in ('obj', 'cf', 'id'): bad('block parameter nullability')
    if h['k'] in ('sel', 'fn'): return      # function pointers are always Option<> in the bindings
    hn, fn = h['n'], f['n']
    if hn == NN and fn == NU: bad('nullability')
    if hn == NU and fn == NN: bad('nullability')
    if hn == UN and fn == NN and h['k'] not in ('self', 'fn') : bad('nullability')

def vkey(v): return tuple(int(x) for x in re.findall(r'\d+', v)) if v else ()
def same(a, b):
    a, b = vkey(a), vkey(b)
    a += (0,) * (3 - len(a)); b += (0,) * (3 - len(b)); return a == b

def compare(verbose):
    D = walk_headers(header_ast()); F = json.load(open(FACTS))
    F['consts'] = {k: {'value': v[0], 'enum': v[1] or None, 'file': v[2]} for k, v in F['consts'].items()}
    for grp in ('classes', 'protocols'):
        for n, c in F[grp].items():
            c['name'] = n
            for x, m in c['m'].items(): m['name'] = x
    for c in list(F['classes'].values()) + list(F['protocols'].values()) + [{'m': F['functions']}]:
        for m in c['m'].values():
            if 'mac' in m: F['availability'].setdefault(c['name'], {})[m['name']] = m['mac'] or None
            if 'sig' in m: m['ret'], m['args'] = F['types'][m['sig'][0]], [F['types'][i] for i in m['sig'][1:]]
    M = json.load(open(EXTRA)) if os.path.exists(EXTRA) else {}
    ok, bad, missing, manual, second = [], [], [], [], []
    n_avail = [0, 0]
    def check(name, why): (bad if why else ok).append((name, why))
    def miss(name):
        if name in F.get('second', {}): second.append((name, F['second'][name]))
        elif name in M: manual.append((name, M[name]))
        else: missing.append(name)
    for grp, sig in (('classes', ''), ('protocols', 'protocol ')):
        for c, d in sorted(D[grp].items()):
            f = F[grp].get(c)
            if grp == 'classes':
                if not f: miss('class ' + c)
                elif f.get('file'):
                    why = [] if (f.get('super') == d['super'] or d['super'] is None) else ['superclass: header %s, source %s' % (d['super'], f.get('super'))]
                    if d['super'] is None and f.get('super'): why = []
                    check('class ' + c, why)
            for s, m in sorted(d['m'].items()):
                nm = sig + '%s[%s %s]' % (s[0], c, s[1:])
                g = (f or {}).get('m', {}).get(s)
                if m.get('unavailable'):      # marked unusable in the header: the source must not offer it on the class itself
                    check(nm + ' (unavailable)', ['source offers it'] if g and not g.get('inherited') and s[1:] != 'new' else []); continue
                if not g: miss(nm); continue
                if 'error' in g: miss(nm); continue
                why = []
                if len(m['args']) != len(g.get('args', [])): why.append('argument count %d, source %d' % (len(m['args']), len(g.get('args', []))))
                else:
                    for a, b in zip(m['args'], g.get('args', [])): cmp(a, b, c, why)
                    if s[1:] not in ('init', 'new', 'alloc'): cmp(dict(m['ret'], n=full(g['ret'])['n']) if m.get('resettable') else m['ret'], g['ret'], c, why, True)
                if bool(m.get('dep')) != bool(g.get('dep')): why.append('deprecation: header %s, source %s' % (m.get('dep'), g.get('dep')))
                check(nm, why)
    for n, m in sorted(D['functions'].items()):
        if n.startswith('Subset'): continue
        g = F['functions'].get(n)
        if not g or 'error' in g:
            miss('function ' + n); continue
        why = []
        if len(m['args']) != len(g.get('args', [])): why.append('argument count %d, source %d' % (len(m['args']), len(g.get('args', []))))
        else:
            for a, b in zip(m['args'], g.get('args', [])): cmp(a, b, None, why)
            # the bindings treat every C pointer result as possibly null, so only the kind can be compared
            cmp(dict(m['ret'], n=NU) if m['ret']['n'] == NN else m['ret'], dict(full(g['ret']), n=NU if full(g['ret'])['n'] != UN else UN), None, why, True)
        check('function ' + n, why)
    for n, m in sorted(D['vars'].items()):
        g = F['vars'].get(n); why = []
        if not g: miss('variable ' + n); continue
        if 'type' in g: cmp(m['type'], g['type'], None, why)
        if 'value' in g and 'value' in m and g['value'] is not None and abs(m['value']) != abs(g['value']): why.append('value header %s, source %s' % (m['value'], g['value']))
        check('variable ' + n, why)
    for n, m in sorted(D['consts'].items()):
        g = F['consts'].get(n)
        if not g or g.get('value') is None: miss('constant ' + n); continue
        hv, fv = m['value'], g['value']
        why = [] if hv == fv or (hv - fv) % (1 << 64) == 0 or ((hv - fv) % (1 << 32) == 0 and abs(hv) < 1 << 32 and abs(fv) < 1 << 32) else ['value header %s, source %s' % (hv, fv)]
        if m['enum'] and g.get('enum') and m['enum'] != g['enum']: why.append('enum header %s, source %s' % (m['enum'], g['enum']))
        check('constant ' + n, why)
    for n, m in sorted(D['enums'].items()):
        g = F['enums'].get(n)
        if not g: miss('enum ' + n); continue
        check('enum ' + n, [] if g['under'] == m['under'] else ['underlying header %s, source %s' % (m['under'], g['under'])])
    for n, fields in sorted(D['structs'].items()):
        g = F['structs'].get(n) or F['structs'].get({'_NSRange': 'NSRange'}.get(n, n))
        if n.startswith('NSFastEnum') or n in ('objc_object', 'objc_class', 'objc_selector'): continue
        if not g: miss('struct ' + n); continue
        why = []
        if len(fields) != len(g['fields']): why.append('field count')
        else:
            for (a, t), (b, u) in zip(fields, g['fields']):
                if a != b: why.append('field %s, source %s' % (a, b))
                cmp(t, u, None, why)
        check('struct ' + n, why)
    # availability
    A = F.get('availability', {}); av_ok = av_bad = av_new = 0; av_missing = []; V = M.get('availability', {})
    for grp in ('classes', 'protocols'):
        for c, d in sorted(D[grp].items()):
            cs = d.get('since')
            items = [('*', cs)] + [(s, m.get('since') or cs) for s, m in sorted(d['m'].items()) if not m.get('unavailable') and s[1:] not in ('init', 'new')]
            for s, since in items:
                known = A.get(c, {}).get(s, 'none'); key = c + ' ' + s
                if key in V: known = V[key]['v']
                if known == 'none' and vkey(since) < (12, 1): continue     # old API with no statement: nothing to compare
                if known == 'none': av_missing.append(key + ' (header says %s)' % since); continue
                # the .NET source drops versions older than its floor (12.0)
                if (known and vkey(known) > (12, 0) or vkey(since) > (12, 0)) and not same(known, since): av_bad += 1; print('AVAILABILITY %s: header %s, source %s' % (key, since, known))
                else: av_ok += 1; av_new += bool(known and vkey(known) > (12, 0))
    for e, m in sorted(D['enums'].items()):
        known = A.get(e, {}).get('*', 'none')
        if known == 'none': continue
        if (known and vkey(known) > (12, 0) or vkey(m['since']) > (12, 0)) and not same(known, m['since']): av_bad += 1; print('AVAILABILITY %s: header %s, source %s' % (e, m['since'], known))
        else: av_ok += 1
    for n, w in bad: print('MISMATCH', n, '|', '; '.join(w))
    for n in missing: print('NOT IN SOURCE', n)
    for n in av_missing: print('AVAILABILITY NOT IN SOURCE', n)
    if verbose:
        for n, w in ok: print('ok', n)
        for n, w in second: print('second source', n, '|', w)
        for n, w in manual: print('by hand', n, '|', w)
    print('\nmatched %d, mismatched %d, not in the bindings: %d named in the second source, %d listed by hand, %d unconfirmed' % (len(ok), len(bad), len(second), len(manual), len(missing)))
    print('availability: %d agree (%d of them newer than 12.0, where the source states a version), %d disagree, %d without a statement' % (av_ok, av_new, av_bad, len(av_missing)))
    return 1 if bad or missing or av_bad or av_missing else 0

if __name__ == '__main__':
    if '--export' in sys.argv:
        i = sys.argv.index('--export'); mg = sys.argv[sys.argv.index('--mac') + 1] if '--mac' in sys.argv else None
        export(sys.argv[i + 1], sys.argv[i + 2], mg)
    else: sys.exit(compare('--verbose' in sys.argv))
