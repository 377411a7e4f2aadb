#!/usr/bin/env python3
"""Does the interface check notice a wrong signature? Seeds them one by one into a copy of sdk/.

    seed_signatures.py [COMPILER]

Compiles interface_signatures.cpp against sdk/ as it is, which must succeed, and against each copy, which must fail.
"""
import pathlib
import shutil
import subprocess
import sys
import tempfile

# Header, what it says, what the seeded fault says.
SEEDS = [
    ('c4d_nodes.h', 'BaseTime GetTime();', 'BaseTime GetTime() const;'),
    ('c4d_nodes.h', 'Filename GetDocumentPath();', 'Filename GetDocumentPath() const;'),
    ('c4d_nodes.h', 'Filename GetDocumentName();', 'String GetDocumentName();'),
    ('c4d_nodes.h', 'BaseContainer GetData(DOCUMENTSETTINGS type);', 'BaseContainer GetData(LONG type);'),
    ('c4d_nodes.h', 'const String& GetTypeName();', 'String GetTypeName();'),
    ('c4d_nodes.h', 'NodeData* GetNodeData(LONG index = 0) const;', 'NodeData* GetNodeData(LONG index = 0);'),
    ('c4d_nodes.h', 'Bool Message(LONG type, void* data = NULL);', 'Bool Message(LONG type, const void* data = NULL);'),
    ('c4d_nodes.h', 'Matrix GetMg() const;', 'const Matrix& GetMg() const;'),
    ('c4d_nodes.h', 'BaseTag* GetTag(LONG type, LONG nr = 0);', 'BaseTag* GetTag(LONG type);'),
    ('c4d_nodes.h', 'Bool AddUndo(UNDOTYPE type, void* data, Bool allowFromThread = FALSE);',
     'Bool AddUndo(UNDOTYPE type, void* data);'),
    ('c4d_nodes.h', 'Bool IsDirty(DIRTYFLAGS flags);', 'Bool IsDirty(LONG flags);'),
    ('c4d_nodes.h', 'void InsertVideoPost(BaseVideoPost* vp, BaseVideoPost* pred = NULL);',
     'Bool InsertVideoPost(BaseVideoPost* vp, BaseVideoPost* pred = NULL);'),
    ('c4d_geometry.h', 'LONG GetDataCount();', 'LONG GetDataCount() const;'),
    ('c4d_geometry.h', 'LONG GetPolygonCount();', 'VLONG GetPolygonCount();'),
    ('c4d_geometry.h', 'const Segment* GetSegmentR();', 'const Segment* GetSegmentR() const;'),
    ('c4d_render.h', 'Real ior = 1.0;', 'SReal ior = 1.0f;'),
    ('c4d_render.h', 'LONG GetCurrentCPU();', 'LONG GetCurrentCPU() const;'),
    ('c4d_render.h', 'RayCamera* GetRayCamera();', 'const RayCamera* GetRayCamera();'),
    ('c4d_render.h', 'LONG GetInfo(VPGETINFO type);', 'LONG GetInfo(VPGETINFO type) const;'),
    ('c4d_render.h', 'VPBuffer* GetBuffer(LONG id, LONG subid);', 'VPBuffer* GetBuffer(LONG id, LONG subid) const;'),
    ('c4d_render.h', '  void* customdata;\n', ''),
    ('c4d_render.h', '  Bool calc_shadow;\n', '  Bool calc_shadow = TRUE;\n  IlluminanceSurfacePointData() {}\n'),
    ('c4d_plugindata.h', 'virtual Bool Read(GeListNode*, HyperFile*, LONG /*level*/)',
     'virtual Bool Read(GeListNode*, HyperFile*, VLONG /*level*/)'),
    ('c4d_plugindata.h', 'virtual void CalcShadow(BaseVideoPost*, VolumeData*)',
     'virtual Bool CalcShadow(BaseVideoPost*, VolumeData*)'),
    ('c4d_plugindata.h', 'virtual Vector Output(BaseShader*, ChannelData*)',
     'virtual Vector Output(BaseShader*, const ChannelData*)'),
    ('c4d_gl.h', 'Bool BindToView(const BaseDraw* bd);', 'Bool BindToView(BaseDraw* bd);'),
    ('c4d_gl.h', 'Bool FreeBuffer(const BaseDraw* bd, GlVertexSubBufferData* sub);',
     'void FreeBuffer(const BaseDraw* bd, GlVertexSubBufferData* sub);'),
    ('c4d_particles.h', 'LONG AllocParticle();', 'LONG AllocParticle() const;'),
    ('lib_hair.h', 'Bool SetGuides(HairGuides* guides, Bool clone);', 'Bool SetGuides(HairGuides* guides);'),
    ('ge_string.h', 'String SubStr(LONG start, LONG count) const;', 'String SubStr(LONG start, LONG count);'),
    ('lib_prefs.h', '  void InitPrefsValue(', '  static void InitPrefsValue('),
    ('ge_data.h', 'GeData* SetData(LONG id, const GeData& data);', 'void SetData(LONG id, const GeData& data);'),
    ('c4d_enums.h', 'FILTER_TIF = 1100', 'FILTER_TIF = 1101'),
]


def compiles(compiler, sdk):
    here = pathlib.Path(__file__).parent
    command = [compiler, '-std=c++17', '-fsyntax-only', '-fpermissive', '-w', '-D__C4D_NO_NEW_DELETE__', '-I', str(sdk),
               str(here / 'interface_signatures.cpp')]
    return subprocess.run(command, capture_output=True).returncode == 0


def main():
    compiler = sys.argv[1] if len(sys.argv) > 1 else 'c++'
    sdk = pathlib.Path(__file__).parent.parent / 'sdk'
    if not compiles(compiler, sdk):
        sys.exit('interface_signatures.cpp does not compile against sdk/ as it is')
    missed = []
    for number, (header, true, wrong) in enumerate(SEEDS, 1):
        with tempfile.TemporaryDirectory() as folder:
            copy = pathlib.Path(folder) / 'sdk'
            shutil.copytree(sdk, copy)
            text = (copy / header).read_text(encoding='utf-8')
            if true not in text:
                sys.exit(f'{header} does not say "{true}": mend the seed')
            (copy / header).write_text(text.replace(true, wrong, 1), encoding='utf-8')
            if compiles(compiler, copy):
                missed.append(number)
                print(f'missed: {header}: {wrong.strip()}')
    print(f'{len(SEEDS) - len(missed)} of {len(SEEDS)} wrong signatures caught')
    sys.exit(1 if missed else 0)


main()
