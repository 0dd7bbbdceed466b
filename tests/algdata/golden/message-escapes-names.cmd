cd $scratch
algdata show $'red\033[31m\nalgdata: all well.txt'
mkdir $'d\033[2J'
printf 'a4c3f0000010 a4c3f0000011\n' > $'d\033[2J/\x9b.txt'
algdata show $'d\033[2J'
algdata export $'d\033[2J' -o $'none\r/x'
algdata check $'d\033[2J/\x9b.txt'
