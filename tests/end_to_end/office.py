"""Recalculates workbooks with LibreOffice, where it is installed, as an independent witness."""

import shutil
import subprocess
import tempfile
from pathlib import Path

PROFILE = '''<?xml version="1.0" encoding="UTF-8"?>
<oor:items xmlns:oor="http://openoffice.org/2001/registry"
           xmlns:xs="http://www.w3.org/2001/XMLSchema"
           xmlns:xsi="http://www.w3.org/2001/XMLSchema-instance">
<item oor:path="/org.openoffice.Office.Calc/Formula/Load">
<prop oor:name="OOXMLRecalcMode" oor:op="fuse"><value>0</value></prop></item>
<item oor:path="/org.openoffice.Setup/Product">
<prop oor:name="ooSetupLastVersion" oor:op="fuse"><value>99.0</value></prop></item>
</oor:items>
'''


def program():
    return shutil.which('soffice') or shutil.which('libreoffice')


def recalculated(workbooks, folder):
    """Opens the files with every formula recalculated and saves them as .xlsx into the folder.

    Returns the new paths in the same order. File names must differ in their stems.
    """
    folder = Path(folder)
    folder.mkdir(parents=True, exist_ok=True)
    with tempfile.TemporaryDirectory(prefix='vantora-office-') as home:
        user = Path(home) / 'profile' / 'user'
        user.mkdir(parents=True)
        (user / 'registrymodifications.xcu').write_text(PROFILE, encoding='utf-8')
        finished = subprocess.run(
            [program(), f'-env:UserInstallation={(Path(home) / "profile").as_uri()}', '--headless',
             '--norestore', '--convert-to', 'xlsx', '--outdir', str(folder),
             *map(str, workbooks)],
            stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True,
            timeout=900, check=False)
    results = [folder / (Path(path).stem + '.xlsx') for path in workbooks]
    missing = [str(path) for path in results if not path.exists()]
    if missing:
        raise AssertionError(f'LibreOffice wrote no {", ".join(missing)}:\n{finished.stdout}')
    return results
