algdata show good/patV2.txt --where bandOrder=1 --sort=-mcsOrder
