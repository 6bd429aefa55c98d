# The commands of a commit without packages, on directories of their own below floor/. Runs in the installation.
find "floor/custom" -name "*.*" -exec rm -rf {} \;
mkdir -p "floor/stored/1700000000"
cp  -Rf "custom/"* "floor/stored/1700000000/"
